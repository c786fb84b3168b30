#include <charconv>
#include <cmath>
#include <utility>

#include <fmt/format.h>
#include <simdjson.h>

#include <Corvane/Platform/JSON/JSONOutput.hpp>
#include <Corvane/Platform/JSON/Private/JSONErrors.hpp>
#include <Corvane/Platform/JSON/Private/JSONTextWriter.hpp>
#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane::detail {

JSONOutput::JSONOutput(JSONWritingOptions options)
    : options_(options), writer_(std::make_unique<JSONTextWriter>(options.prettyPrinted)) {}

JSONOutput::~JSONOutput() = default;

void JSONOutput::writeNull() {
    writer_->writePlain("null");
}

void JSONOutput::write(bool value) {
    writer_->writePlain(value ? "true" : "false");
}

void JSONOutput::writeSigned(std::int64_t value) {
    const fmt::format_int text(value);
    writer_->writePlain({text.data(), text.size()});
}

void JSONOutput::writeUnsigned(std::uint64_t value) {
    const fmt::format_int text(value);
    writer_->writePlain({text.data(), text.size()});
}

void JSONOutput::write(double value, const CodingStep* path) {
    const std::string text = numberText(value);
    if (!std::isfinite(value)) fail(fmt::format("JSON cannot express the number {}", text), path);
    writer_->writePlain(text);
}

void JSONOutput::write(float value, const CodingStep* path) {
    if (!std::isfinite(value)) return write(static_cast<double>(value), path);
    // The digits that tell the float from its neighbours, not those of the double that equals it.
    constexpr std::size_t longest = 32;
    char digits[longest];
    const auto text = std::to_chars(digits, digits + longest, value);
    double shortest = 0;
    std::from_chars(digits, text.ptr, shortest);
    write(shortest, path);
}

void JSONOutput::writeText(std::string_view value, const CodingStep* path) {
    checkText(value, path);
    writer_->writeText(value);
}

void JSONOutput::writeJSON(const JSONValue& value, const CodingStep* path) {
    JSONWriter values(*writer_, false, JSONWriter::Strictness::strict);
    if (const auto code = values.write(value)) fail(jsonErrorText(*code), path);
}

bool JSONOutput::open(char bracket, const CodingStep* path) {
    if (depth() == JSONSerialization::maximumDepth) {
        fail("The value is nested too deeply", path);
        return false;
    }
    writer_->open(bracket);
    hasItems_.push_back(false);
    return true;
}

void JSONOutput::close(char bracket) {
    writer_->close(bracket, !hasItems_.back());
    hasItems_.pop_back();
}

void JSONOutput::startMember(std::string_view key, const CodingStep* path) {
    startElement();
    checkText(key, path);
    writer_->writeKey(key);
}

void JSONOutput::startElement() {
    writer_->startItem(!hasItems_.back());
    hasItems_.back() = true;
}

void JSONOutput::checkText(std::string_view text, const CodingStep* path) {
    if (!simdjson::validate_utf8(text.data(), text.size())) fail("The text is not valid UTF-8", path);
}

void JSONOutput::fail(std::string_view problem, const CodingStep* path) {
    if (error_) return;
    CodingPath codingPath = pathOf(path);
    std::string text = fmt::format("{} at {}.", problem, description(codingPath));
    error_ = EncodingError::invalidValue({std::move(codingPath), std::move(text)});
}

std::expected<Data, EncodingError> JSONOutput::finish() {
    if (error_) return std::unexpected(*std::move(error_));
    Data written = std::move(*writer_).data();
    if (!options_.sortedKeys) return written;
    // Members arrive in the order of the types; sorting them is left to the loosely typed value.
    const auto value = JSONSerialization::jsonObject(written);
    auto sorted = value ? JSONSerialization::data(*value, options_) : std::unexpected(value.error());
    if (!sorted) return std::unexpected(EncodingError::invalidValue({{}, sorted.error().localizedDescription()}));
    return *std::move(sorted);
}

}  // namespace corvane::detail
