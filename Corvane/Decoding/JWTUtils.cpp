#include <Corvane/Decoding/JWTUtils.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/Text/Base64.hpp>

namespace corvane {
namespace {

std::string paddedToFours(std::string_view text) {
    constexpr std::size_t group = 4;
    std::string padded;
    padded.reserve(text.size() + group);
    padded = text;
    padded.resize((text.size() + group - 1) / group * group, '=');
    return padded;
}

}  // namespace

std::expected<std::optional<JSONDictionary>, AnyError> JWTUtils::decodePayload(std::string_view jwt) {
    const std::size_t headerEnd = jwt.find('.');
    if (headerEnd == std::string_view::npos) return std::nullopt;
    const std::string_view rest = jwt.substr(headerEnd + 1);
    const auto bytes = base64Data(paddedToFours(rest.substr(0, rest.find('.'))));
    if (!bytes) return std::unexpected(DecodeError::badToken());
    const auto claims = JSONSerialization::jsonObject(*bytes);
    if (!claims) return std::unexpected(claims.error());
    const JSONDictionary* dictionary = claims->asDictionary();
    if (dictionary == nullptr) return std::unexpected(DecodeError::other());
    return *dictionary;
}

}  // namespace corvane
