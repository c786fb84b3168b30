#include <cxxabi.h>

#include <cstdlib>

#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Private/GenericErrorText.hpp>

namespace corvane {

namespace {

std::string readableName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                           &std::free);
    return name ? name.get() : type.name();
}

}  // namespace

AnyError::Box::~Box() = default;

std::string AnyError::localizedDescription() const {
    if (auto text = box_->userText()) return *std::move(text);
    return genericErrorText(domain(), code());
}

std::string AnyError::domain() const {
    if (auto domain = box_->domain()) return *std::move(domain);
    return readableName(box_->type());
}

}  // namespace corvane
