#include <string>
#include <utility>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/Private/JSONErrors.hpp>
#include <Corvane/Platform/JSON/Private/JSONReader.hpp>
#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>

namespace corvane {

namespace {

std::unexpected<PlatformError> failure(JSONErrorCode code) {
    return std::unexpected(
        PlatformError(std::string(jsonErrorDomain), static_cast<std::int64_t>(code), detail::jsonErrorText(code)));
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
    detail::JSONTextWriter writer(options.prettyPrinted);
    detail::JSONWriter values(writer, options.sortedKeys, detail::JSONWriter::Strictness::strict);
    if (const auto code = values.write(value)) return failure(*code);
    return std::move(writer).data();
}

}  // namespace corvane
