#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/Private/ResponseHead.hpp>

namespace corvane::http {

void ResponseHead::reset() noexcept {
    bytes_ = 0;
    isComplete_ = false;
    statusCode_ = 0;
    version_.clear();
    fields_.clear();
}

bool ResponseHead::append(std::string_view line) {
    bytes_ += line.size();
    if (bytes_ > maximumBytes) return false;
    if (line.ends_with('\n')) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const bool mayStart = isComplete_ || version_.empty();
    if (mayStart && line.starts_with("HTTP/")) {
        readStatusLine(line);
    } else if (mayStart) {
        // A trailer, or nothing we know.
    } else if (line.empty()) {
        isComplete_ = true;
    } else {
        readField(line);
    }
    return true;
}

void ResponseHead::readStatusLine(std::string_view line) {
    const auto blank = std::min(line.find(' '), line.size());
    version_ = line.substr(0, blank);
    const auto digits = trimmed(line.substr(blank)).substr(0, 3);
    int code = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), code);
    statusCode_ = digits.size() == 3 && read.ptr == digits.data() + digits.size() ? code : 0;
    isComplete_ = false;
    fields_.clear();
    fields_.reserve(16);
}

void ResponseHead::readField(std::string_view line) {
    if (line.front() == ' ' || line.front() == '\t') {
        if (!fields_.empty()) fields_.back().value.append(" ").append(trimmed(line));
        return;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || !isToken(line.substr(0, colon))) return;
    const auto name = line.substr(0, colon);
    fields_.push_back(
        {isHTTP2() ? canonicalName(name) : std::string(name), std::string(trimmed(line.substr(colon + 1)))});
}

std::optional<std::string_view> ResponseHead::value(std::string_view field) const noexcept {
    const auto found =
        std::ranges::find_if(fields_, [&](const HTTPHeaderField& each) { return equalNames(each.name, field); });
    if (found == fields_.end()) return std::nullopt;
    return found->value;
}

std::optional<std::size_t> ResponseHead::contentLength() const noexcept {
    const auto text = value("Content-Length");
    if (!text || value("Content-Encoding")) return std::nullopt;
    std::size_t length = 0;
    const auto read = std::from_chars(text->data(), text->data() + text->size(), length);
    // More than a number holds is certainly too much; libcurl would ignore the field and wait for the end.
    if (read.ec == std::errc::result_out_of_range) return std::numeric_limits<std::size_t>::max();
    if (read.ec != std::errc{}) return std::nullopt;
    return length;
}

bool ResponseHead::hasConflictingLengths() const noexcept {
    const auto first = value("Content-Length");
    return first && std::ranges::any_of(fields_, [&](const HTTPHeaderField& each) {
               return equalNames(each.name, "Content-Length") && each.value != *first;
           });
}

std::shared_ptr<const HTTPURLResponse> ResponseHead::makeResponse(const URL& url) {
    return std::make_shared<const HTTPURLResponse>(url, statusCode_, version_, std::move(fields_));
}

}  // namespace corvane::http
