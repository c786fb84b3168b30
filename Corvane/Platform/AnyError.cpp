#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Private/GenericErrorText.hpp>
#include <Corvane/Platform/Private/TypeName.hpp>

namespace corvane {

AnyError::Box::~Box() = default;

std::string AnyError::localizedDescription() const {
    if (auto text = box_->userText()) return *std::move(text);
    return genericErrorText(domain(), code());
}

std::string AnyError::domain() const {
    if (auto domain = box_->domain()) return *std::move(domain);
    return typeName(box_->type());
}

}  // namespace corvane
