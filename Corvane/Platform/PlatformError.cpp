#include <utility>

#include <fmt/format.h>

#include <Corvane/Platform/PlatformError.hpp>
#include <Corvane/Platform/Private/GenericErrorText.hpp>

namespace corvane {

std::string genericErrorText(std::string_view domain, std::int64_t code) {
    return fmt::format("The operation couldn’t be completed. ({} error {}.)", domain, code);
}

PlatformError::PlatformError(std::string domain, std::int64_t code, std::string text)
    : domain_(std::move(domain)), code_(code), text_(std::move(text)) {}

std::string PlatformError::localizedDescription() const {
    return text_.empty() ? genericErrorText(domain_, code_) : text_;
}

std::string PlatformError::description() const {
    const std::string description = fmt::format("Error Domain={} Code={}", domain_, code_);
    return text_.empty() ? description : fmt::format("{} \"{}\"", description, text_);
}

}  // namespace corvane
