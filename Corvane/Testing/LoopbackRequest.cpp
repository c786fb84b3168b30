#include <algorithm>

#include <Corvane/Testing/LoopbackRequest.hpp>
#include <Corvane/Testing/Private/HTTPSyntax.hpp>

namespace corvane::testing {

std::string_view LoopbackRequest::path() const noexcept {
    return std::string_view(target).substr(0, target.find('?'));
}

std::string_view LoopbackRequest::query() const noexcept {
    const std::size_t mark = target.find('?');
    return mark == std::string::npos ? std::string_view() : std::string_view(target).substr(mark + 1);
}

std::optional<std::string_view> LoopbackRequest::header(std::string_view name) const noexcept {
    const auto found = std::ranges::find_if(
        headers, [name](const HTTPHeaderField& field) { return http::equalsIgnoringCase(field.name, name); });
    if (found == headers.end()) return std::nullopt;
    return found->value;
}

}  // namespace corvane::testing
