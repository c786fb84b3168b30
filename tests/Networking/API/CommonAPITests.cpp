#include <deque>

#include <gmock/gmock.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/Networking/API/CommonAPI.hpp>
#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using testing::LoopbackResponse;

struct Team {
    std::uint8_t id;
    std::string name;
    std::optional<std::string> city;
};

struct ScriptedRetry final : APIAutoRetry {
    Task<TYAutoRetryResult> start() override {
        co_return retriesLeft-- > 0 ? TYAutoRetryResult::retry : TYAutoRetryResult::stop;
    }

    void clear() override { ++clears; }

    int retriesLeft = 2;
    int clears = 0;
};

LoopbackResponse answer(std::string body, const char* date = "Fri, 15 Mar 2024 11:00:00 GMT") {
    return LoopbackResponse::json(std::move(body)).with("Last-Modified", "at  \xE9leven").with("Date", date);
}

/// An API whose server gives one answer after the other.
struct Fixture {
    explicit Fixture(std::deque<LoopbackResponse> answers, std::shared_ptr<APIAutoRetry> retry = nullptr)
        : api(std::make_shared<URLSessionAPIRemote>(nullptr, 30, "scores/2.1"), cache, std::move(retry)) {
        server.route("GET", "/team", [this, answers = std::move(answers)](const auto&) mutable {
            if (onRequest) onRequest();
            LoopbackResponse response = std::move(answers.front());
            answers.pop_front();
            return response;
        });
        api.update(URL::parse(server.url("/team")));
    }

    auto load() { return runBlocking(api.loadData()); }

    bool caches(const char* path) { return runBlocking(cache->data(server.url(path))).has_value(); }

    std::function<void()> onRequest;
    std::shared_ptr<DataCacheProvider> cache = DataCacheProvider::make(60, 300);
    testing::LoopbackServer server;
    CommonAPI<Team> api;
};

const char* const rovers = R"({"id": 7, "name": "Rovers"})";

TEST(CommonAPI, AsksConditionallyAndServesTheCachedBodyWhenNothingHasChanged) {
    const testing::VirtualClock clock(Date(std::chrono::duration<double>(1700000000.75)));
    Fixture f({answer(rovers), {.status = 304}, answer(rovers, "Monday"), LoopbackResponse::json(rovers)});
    for (const std::uint64_t timestamp : {1710500400U, 1710500400U, 1700000000U, 1700000000U}) {
        const auto result = f.load();
        EXPECT_EQ(result.value().model.name, "Rovers");
        EXPECT_EQ(result->timestamp, SecondsSince1970(timestamp));
    }
    EXPECT_EQ(f.server.requests()[0].header("If-Modified-Since"), std::nullopt);
    EXPECT_EQ(f.server.requests()[1].header("If-Modified-Since"), "at  \xE9leven");
}

TEST(CommonAPI, SaysWhereABodyIsNoModelAndCachesNothingOfIt) {
    const std::pair<std::string, const char*> rows[] = {{R"({"id": "7", "name": "Rovers"})", "at id"},
                                                        {R"({"id": 7})", "\"name\""},
                                                        {R"({"id": 7, "name": "Rovers")", ""},
                                                        {"", ""}};
    for (const auto& [body, place] : rows) {
        SCOPED_TRACE(body.substr(0, 80));
        Fixture f({answer(body)});
        const auto result = f.load();
        ASSERT_FALSE(result);
        EXPECT_TRUE(result.error().isDecodingError());
        EXPECT_THAT(result.error().errorDescription(), ::testing::HasSubstr(place));
        EXPECT_FALSE(f.caches("/team"));
    }
}

TEST(CommonAPI, LoadsAgainAfterServerFaultsAsLongAsTheHandlerSays) {
    const auto retry = std::make_shared<ScriptedRetry>();
    Fixture f({{.status = 500}, answer(rovers), {.status = 501}, {.status = 502}, {.status = 404}}, retry);
    EXPECT_EQ(f.load().value().model.id, 7);
    EXPECT_EQ(retry->clears, 0);
    EXPECT_EQ(f.load().error(), CommonAPIError::serverFault(502));
    EXPECT_EQ(f.load().error(), CommonAPIError::clientFault(404));
    EXPECT_EQ(retry->clears, 1);

    Fixture g({{.status = 503}, {.status = 304}});
    EXPECT_EQ(g.load().error(), CommonAPIError::serverFault(503));
    EXPECT_EQ(g.load().error(), CommonAPIError::clientAPIError(ClientAPIError::emptyData()));
    g.api.update(std::nullopt);
    EXPECT_EQ(g.load().error(), CommonAPIError::invalidURL());
}

TEST(CommonAPI, EndsALoadWithItsTaskAndNotWithTheAPI) {
    testing::LoopbackServer server;
    server.route("GET", "/held", LoopbackResponse::held());
    std::optional<CommonAPI<Team>> api(std::in_place, std::make_shared<URLSessionAPIRemote>(nullptr, 30, "scores/2.1"));
    api->update(URL::parse(server.url("/held")));
    const auto load = spawn(api->loadData());
    ASSERT_TRUE(server.waitForHeldExchange());
    api.reset();
    load.cancel();
    EXPECT_EQ(runBlocking(load.value()).error(), CommonAPIError::urlSessionError(makeURLError(URLError::cancelled)));
}

TEST(CommonAPI, CachesUnderTheURLThatWasSetDuringTheLoad) {
    Fixture f({answer(rovers)});
    f.onRequest = [&f] { f.api.update(URL::parse(f.server.url("/other"))); };
    EXPECT_TRUE(f.load());
    EXPECT_FALSE(f.caches("/team"));
    EXPECT_TRUE(f.caches("/other"));
}

}  // namespace
}  // namespace corvane
