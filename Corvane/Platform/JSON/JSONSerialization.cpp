#include <memory>
#include <string>
#include <utility>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/Private/JSONReader.hpp>
#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>

namespace corvane {

namespace {

std::string errorText(JSONErrorCode code) {
    switch (code) {
        case JSONErrorCode::emptyInput:
            return "The JSON text is empty.";
        case JSONErrorCode::malformed:
            return "The text is not valid JSON.";
        case JSONErrorCode::invalidUTF8:
            return "The text is not valid UTF-8.";
        case JSONErrorCode::tooDeep:
            return "The JSON value is nested too deeply.";
        case JSONErrorCode::invalidNumber:
            return "The JSON text holds a number that is malformed or too large.";
        case JSONErrorCode::tooLarge:
            return "The JSON text is too large.";
        case JSONErrorCode::nonFiniteNumber:
            return "JSON cannot express a number that is not finite.";
        case JSONErrorCode::outOfMemory:
            return "There is not enough memory for the JSON value.";
    }
    return {};
}

std::unexpected<PlatformError> failure(JSONErrorCode code) {
    return std::unexpected(
        PlatformError(std::string(jsonErrorDomain), static_cast<std::int64_t>(code), errorText(code)));
}

/// Data that keeps the text's own buffer.
Data adopt(std::string text) {
    const std::size_t size = text.size();
    text.append(Data::padding, '\0');
    const auto owner = std::make_shared<const std::string>(std::move(text));
    const auto* const bytes = reinterpret_cast<const std::byte*>(owner->data());
    return Data::adopting(std::shared_ptr<const std::byte[]>(owner, bytes), size);
}

}  // namespace

std::expected<JSONValue, PlatformError> JSONSerialization::jsonObject(const Data& data) {
    if (data.empty()) return failure(JSONErrorCode::emptyInput);
    auto value = detail::readJSON(data.text());
    if (!value) return failure(value.error());
    return *std::move(value);
}

std::expected<JSONValue, PlatformError> JSONSerialization::jsonObject(std::string_view text) {
    return jsonObject(Data(text));
}

std::expected<Data, PlatformError> JSONSerialization::data(const JSONValue& value, JSONWritingOptions options) {
    detail::JSONWriter writer(options, detail::JSONWriter::Strictness::strict);
    if (const auto code = writer.write(value)) return failure(*code);
    return adopt(std::move(writer).text());
}

}  // namespace corvane
