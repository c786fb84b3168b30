#include "Backend.hpp"

#include <algorithm>
#include <optional>
#include <utility>

#include <fmt/chrono.h>

#include <Corvane/Decoding/IntValue.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace matchday {
namespace {

using corvane::HTTPHeaders;
using corvane::JSONDictionary;
using corvane::JSONSerialization;
using corvane::testing::LoopbackRequest;
using corvane::testing::LoopbackResponse;

constexpr int minutesPerAsk = 12;

/// An HTTP date (RFC 9110, 5.6.7).
std::string httpDate(std::time_t time) {
    return fmt::format("{:%a, %d %b %Y %H:%M:%S} GMT", fmt::gmtime(time));
}

LoopbackResponse json(const JSONDictionary& content, int status = 200) {
    const auto data = JSONSerialization::data(content);
    return data ? LoopbackResponse::json(std::string(data->text()), status) : LoopbackResponse{.status = 500};
}

std::optional<JSONDictionary> payload(const LoopbackRequest& request) {
    const auto value = JSONSerialization::jsonObject(request.body);
    const JSONDictionary* const dictionary = value ? value->asDictionary() : nullptr;
    return dictionary != nullptr ? std::optional(*dictionary) : std::nullopt;
}

LoopbackResponse refusal(std::string_view reason) {
    return json({{"error", reason}}, 400);
}

}  // namespace

Backend::Backend(std::time_t now) : season_(now), lastModified_(now - 90) {
    server_.route("GET", "/v1/fixtures",
                  [this](const Request& request) { return document(request, &Season::fixtures); });
    server_.route("GET", "/v1/standings",
                  [this](const Request& request) { return document(request, &Season::standings); });
    server_.route("GET", "/v1/live", [this](const Request&) { return live(); });
    server_.route("GET", "/v1/details", [this](const Request& request) { return details(request); });
    server_.route("GET", "/v1/lineups", Response{.status = 503});
    server_.route("GET", "/v1/report", Response{.body = "to be written"});
    server_.route("POST", "/v1/predictions", [this](const Request& request) { return prediction(request); });
    server_.route("POST", "/v1/visits", [this](const Request& request) { return visit(request); });
}

LoopbackResponse Backend::document(const Request& request, JSONDictionary (Season::*content)() const) {
    const std::lock_guard lock(mutex_);
    const std::string date = httpDate(lastModified_);
    const bool isKnown = request.header(HTTPHeaders::ifModifiedSince) == date;
    Response response = isKnown ? Response{.status = 304} : json((season_.*content)());
    return std::move(response).with(std::string(HTTPHeaders::lastModified), date);
}

LoopbackResponse Backend::live() {
    const std::lock_guard lock(mutex_);
    lastModified_ = std::max(lastModified_ + 1, std::time(nullptr));
    return json(season_.playOn(minutesPerAsk));
}

LoopbackResponse Backend::details(const Request& request) {
    const std::lock_guard lock(mutex_);
    const std::string_view query = request.query();
    const auto id = corvane::intValue(query.substr(query.find('=') + 1));
    const auto details = id ? season_.details(*id) : std::nullopt;
    // The details of finished games are in an archive, which nobody has the patience for.
    if (!details) return {.fault = corvane::testing::LoopbackFault::neverAnswer};
    return json(*details);
}

LoopbackResponse Backend::prediction(const Request& request) {
    const auto prediction = payload(request);
    if (!prediction || !(*prediction)["fixture"].asInt64()) return refusal("a prediction names its fixture");
    const std::lock_guard lock(mutex_);
    return json({{"accepted", true}, {"receipt", fmt::format("P-{:04}", ++predictionCount_)}}, 201);
}

LoopbackResponse Backend::visit(const Request& request) {
    const auto visit = payload(request);
    if (!visit) return refusal("a visit is a JSON object");
    return json({{"stored", true}, {"requests", (*visit)["requests"]}});
}

}  // namespace matchday
