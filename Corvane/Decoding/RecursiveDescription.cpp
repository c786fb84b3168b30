#include <Corvane/Decoding/RecursiveDescription.hpp>
#include <Corvane/Platform/Private/TypeName.hpp>

namespace corvane::detail {

std::string descriptionHeading(const std::type_info& type) {
    std::string name = typeName(type);
    const std::size_t scope = name.rfind("::", name.find('<'));
    return scope != std::string::npos ? name.substr(scope + 2) : name;
}

void describeField(std::string& description, std::string_view label, std::string_view value) {
    constexpr std::string_view lineStart = "\n    ";
    description.append(lineStart).append(label).append(": ");
    for (const char character : value) {
        if (character == '\n') {
            description += lineStart;
        } else {
            description += character;
        }
    }
}

}  // namespace corvane::detail
