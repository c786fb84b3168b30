#include "Backend.hpp"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Decoding/IntValue.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/Platform/Dates/DateFormatter.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace matchday {
namespace {

using corvane::DateFormatter;
using corvane::HTTPHeaders;
using corvane::JSONDictionary;
using corvane::JSONSerialization;
using corvane::JSONValue;
using corvane::testing::LoopbackRequest;
using corvane::testing::LoopbackResponse;

constexpr int minutesPerAsk = 4;

corvane::Date wholeSecond() {
    return std::chrono::floor<std::chrono::seconds>(corvane::Clock::current().now());
}

template <class Content>
LoopbackResponse json(const Content& content, int status = 200) {
    const auto data = corvane::JSONEncoder().encode(content);
    return data ? LoopbackResponse::json(std::string(data->text()), status) : LoopbackResponse{.status = 500};
}

LoopbackResponse json(const JSONDictionary& content, int status = 200) {
    return json(corvane::JSONValue(content), status);
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

Backend::Backend() : season_(wholeSecond()), lastModified_(wholeSecond() - std::chrono::seconds(90)) {
    serve("/v1/fixtures", [this] { return season_.fixtures(); });
    serve("/v1/standings", [this] { return season_.standings(); });
    serve("/v1/teams", [] { return Season::teams(); });
    serve("/v1/news", [] { return JSONValue(JSONDictionary{{"headline", "Floodlights mended in time for tonight"}}); });
    server_.route("GET", "/v1/live", [this](const Request&) { return live(); });
    server_.route("GET", "/v1/details", [this](const Request& request) { return details(request); });
    server_.route("GET", "/v1/lineups", Response{.status = 503});
    server_.route("GET", "/v1/report", Response{.body = "to be written"});
    server_.route("POST", "/v1/predictions", [this](const Request& request) { return prediction(request); });
    server_.route("POST", "/v1/visits", [this](const Request& request) { return visit(request); });
}

template <class Content>
void Backend::serve(std::string path, Content content) {
    server_.route("GET", std::move(path), [this, content](const Request& request) {
        const std::lock_guard lock(mutex_);
        const std::string date = DateFormatter::httpDate().string(lastModified_);
        const bool isKnown = request.header(HTTPHeaders::ifModifiedSince) == date;
        Response response = isKnown ? Response{.status = 304} : json(content());
        return std::move(response).with(std::string(HTTPHeaders::lastModified), date);
    });
}

LoopbackResponse Backend::live() {
    const std::lock_guard lock(mutex_);
    lastModified_ = std::max(lastModified_ + std::chrono::seconds(1), wholeSecond());
    return json(season_.playOn(minutesPerAsk));
}

LoopbackResponse Backend::details(const Request& request) {
    const std::lock_guard lock(mutex_);
    const std::string_view query = request.query();
    const auto id = corvane::intValue(query.substr(query.find('=') + 1));
    const auto spectators = id ? season_.spectators(FixtureID(*id)) : std::nullopt;
    // The details of finished games are in an archive, which nobody has the patience for.
    if (!spectators) return {.fault = corvane::testing::LoopbackFault::neverAnswer};
    return json({{"fixture", *id}, {"spectators", *spectators}});
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
