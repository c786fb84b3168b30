#include <utility>

#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>

namespace corvane {

namespace {

template <class Matches>
std::optional<std::string> combined(const std::vector<HTTPHeaderField>& fields, const Matches& matches) {
    std::optional<std::string> result;
    for (const auto& field : fields) {
        if (!matches(field.name)) continue;
        if (!result) {
            result = field.value;
            // The one field whose lines must not be joined: its values hold commas (RFC 9110, 5.3).
            if (http::equalNames(field.name, "Set-Cookie")) break;
        } else {
            result->append(", ").append(field.value);
        }
    }
    return result;
}

}  // namespace

HTTPURLResponse::HTTPURLResponse(URL url, int statusCode, std::string httpVersion,
                                 std::vector<HTTPHeaderField> headerFields)
    : url_(std::move(url)),
      statusCode_(statusCode),
      httpVersion_(std::move(httpVersion)),
      headerFields_(std::move(headerFields)) {}

std::optional<std::string> HTTPURLResponse::headerField(std::string_view exactName) const {
    return combined(headerFields_, [&](std::string_view name) { return name == exactName; });
}

std::optional<std::string> HTTPURLResponse::value(std::string_view field) const {
    return combined(headerFields_, [&](std::string_view name) { return http::equalNames(name, field); });
}

}  // namespace corvane
