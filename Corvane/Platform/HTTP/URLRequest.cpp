#include <algorithm>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>

namespace corvane {

URLRequest::URLRequest(URL url, URLRequestCachePolicy cachePolicy) : url_(std::move(url)), cachePolicy_(cachePolicy) {}

URLRequest::URLRequest(URL url, URLRequestCachePolicy cachePolicy, double timeoutInterval)
    : URLRequest(std::move(url), cachePolicy) {
    setTimeoutInterval(timeoutInterval);
}

double URLRequest::timeoutInterval() const noexcept {
    return timeoutInterval_.value_or(defaultTimeoutInterval);
}

void URLRequest::setTimeoutInterval(double seconds) noexcept {
    timeoutInterval_ = seconds > 0 ? std::optional(seconds) : std::nullopt;
}

void URLRequest::setValue(std::string value, std::string_view field) {
    const auto first = std::ranges::find_if(
        headerFields_, [&](const HTTPHeaderField& known) { return http::equalNames(known.name, field); });
    if (first == headerFields_.end()) {
        headerFields_.push_back({std::string(field), std::move(value)});
    } else {
        *first = {std::string(field), std::move(value)};
    }
}

void URLRequest::addValue(std::string_view value, std::string_view field) {
    const auto known = std::ranges::find_if(
        headerFields_, [&](const HTTPHeaderField& each) { return http::equalNames(each.name, field); });
    if (known == headerFields_.end()) {
        headerFields_.push_back({std::string(field), std::string(value)});
    } else {
        known->value.append(",").append(value);
    }
}

void URLRequest::removeValue(std::string_view field) {
    std::erase_if(headerFields_, [&](const HTTPHeaderField& known) { return http::equalNames(known.name, field); });
}

std::optional<std::string> URLRequest::value(std::string_view field) const {
    const auto known = std::ranges::find_if(
        headerFields_, [&](const HTTPHeaderField& each) { return http::equalNames(each.name, field); });
    if (known == headerFields_.end()) return std::nullopt;
    return known->value;
}

}  // namespace corvane
