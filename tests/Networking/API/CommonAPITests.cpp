#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/Networking/API/CommonAPI.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using Outcome = std::expected<URLSessionAPIResponse, CommonAPIError>;

struct Team {
    std::uint8_t id;
    std::string name;
    std::optional<std::string> city;
};

/// Answers with what it was given, in that order, and keeps what it was asked.
class ScriptedRemote final : public APIRemoteProtocol {
  public:
    explicit ScriptedRemote(std::deque<Outcome> outcomes) : outcomes_(std::move(outcomes)) {}

    Task<Outcome> performRequest(URL url, std::optional<std::string> ifModifiedSince,
                                 std::optional<std::string> httpMethod, std::optional<Data> httpBody) override {
        EXPECT_EQ(httpMethod, "GET");
        EXPECT_EQ(httpBody, std::nullopt);
        asked.push_back(url.absoluteString() + ' ' + ifModifiedSince.value_or("unconditionally"));
        if (onRequest) onRequest();
        Outcome outcome = std::move(outcomes_.front());
        outcomes_.pop_front();
        co_return outcome;
    }

    std::shared_ptr<URLSessionDataTask> performRequestWithTask(URL, std::string, std::optional<std::string>,
                                                               std::optional<std::string>, std::optional<Data>,
                                                               URLSession::CompletionHandler) override {
        return nullptr;
    }

    std::vector<std::string> asked;
    std::function<void()> onRequest;

  private:
    std::deque<Outcome> outcomes_;
};

struct ScriptedRetry final : APIAutoRetry {
    explicit ScriptedRetry(int retries) : retriesLeft(retries) {}

    Task<TYAutoRetryResult> start() override {
        co_return retriesLeft-- > 0 ? TYAutoRetryResult::retry : TYAutoRetryResult::stop;
    }

    void clear() override { ++clears; }

    int retriesLeft;
    int clears = 0;
};

Outcome answer(std::string_view body, std::optional<std::string> date = "Fri, 15 Mar 2024 11:00:00 GMT") {
    return URLSessionAPIResponse{.data = Data(body), .lastModified = "at  \xE9leven", .timeStamp = std::move(date)};
}

Outcome failed(CommonAPIError error) {
    return std::unexpected(std::move(error));
}

constexpr std::uint64_t elevenOClock = 1710500400;
constexpr const char* url = "http://localhost/team";
constexpr const char* rovers = R"({"id": 7, "name": "Rovers"})";

struct Fixture {
    explicit Fixture(std::deque<Outcome> outcomes, std::shared_ptr<APIAutoRetry> retry = nullptr)
        : remote(std::make_shared<ScriptedRemote>(std::move(outcomes))), api(remote, cache, std::move(retry)) {
        api.update(URL::parse(url));
    }

    auto load() { return runBlocking(api.loadData()); }

    bool caches(const char* key) { return runBlocking(cache->data(key)).has_value(); }

    std::shared_ptr<ScriptedRemote> remote;
    std::shared_ptr<DataCacheProvider> cache = DataCacheProvider::make(60, 300);
    CommonAPI<Team> api;
};

TEST(CommonAPI, AsksConditionallyAndServesTheCachedBodyWhenNothingHasChanged) {
    Fixture f({answer(rovers), failed(CommonAPIError::notModified())});
    for (int load = 0; load < 2; ++load) {
        const auto result = f.load();
        EXPECT_EQ(result.value().model.name, "Rovers");
        EXPECT_EQ(result->timestamp, SecondsSince1970(elevenOClock));
    }
    EXPECT_THAT(f.remote->asked,
                ::testing::ElementsAre("http://localhost/team unconditionally", "http://localhost/team at  \xE9leven"));
}

TEST(CommonAPI, TakesTheTimeOfThisMachineForAMissingOrUnreadableDate) {
    testing::VirtualClock clock(Date(std::chrono::duration<double>(1700000000.75)));
    Fixture f({answer(rovers, std::nullopt), answer(rovers, "yesterday")});
    EXPECT_EQ(f.load().value().timestamp, SecondsSince1970(std::uint64_t{1700000000}));
    EXPECT_EQ(f.load().value().timestamp, SecondsSince1970(std::uint64_t{1700000000}));
}

TEST(CommonAPI, PassesFailuresOn) {
    Fixture f({failed(CommonAPIError::notModified()), failed(CommonAPIError::redirection()),
               failed(CommonAPIError::serverFault(503))});
    EXPECT_EQ(f.load().error(), CommonAPIError::clientAPIError(ClientAPIError::emptyData()));
    EXPECT_EQ(f.load().error(), CommonAPIError::redirection());
    EXPECT_EQ(f.load().error(), CommonAPIError::serverFault(503));
    f.api.update(std::nullopt);
    EXPECT_EQ(f.load().error(), CommonAPIError::invalidURL());
    EXPECT_EQ(f.remote->asked.size(), 3U);
    EXPECT_FALSE(f.caches(url));
}

TEST(CommonAPI, SaysWhereABodyIsNoModelAndCachesNothingOfIt) {
    const std::string longKey(1 << 20, 'k');
    const std::pair<std::string, const char*> rows[] = {
        {R"({"id": "7", "name": "Rovers"})", "at id"},
        {R"({"id": 256, "name": "Rovers"})", "at id"},
        {R"({"id": 7})", "\"name\""},
        {R"({"id": 7, "name": null})", "at name"},
        {R"({"id": 7, "name": "Rovers", "city": {}})", "at city"},
        {R"({"id": 7, "name": "Rovers")", ""},
        {"{\"" + longKey + "\": 1, \"id\": 7}", "\"name\""},
        {R"({"id": 7, "name": "Rovers", "id": 1e3})", "at id"},
        {R"({"id": 7, "name": "Rovers", "more": )" + std::string(100'000, '[') + std::string(100'000, ']') + "}", ""},
        {"", ""},
    };
    for (const auto& [body, place] : rows) {
        SCOPED_TRACE(body.substr(0, 80));
        Fixture f({answer(body)});
        const auto result = f.load();
        ASSERT_FALSE(result);
        EXPECT_TRUE(result.error().isDecodingError());
        EXPECT_THAT(result.error().errorDescription(), HasSubstr(place));
        EXPECT_FALSE(f.caches(url));
    }
}

TEST(CommonAPI, LoadsAgainAsLongAsTheHandlerSaysAndEndsWithTheFaultItStoppedAt) {
    const auto retry = std::make_shared<ScriptedRetry>(2);
    const auto fault = [](int code) { return failed(CommonAPIError::serverFault(code)); };
    Fixture f({fault(500), answer(rovers), fault(501), fault(502), failed(CommonAPIError::clientFault(404))}, retry);
    EXPECT_EQ(f.load().value().model.id, 7);
    EXPECT_EQ(retry->clears, 0);
    EXPECT_EQ(f.load().error(), CommonAPIError::serverFault(502));
    EXPECT_EQ(retry->clears, 1);
    EXPECT_EQ(f.load().error(), CommonAPIError::clientFault(404)) << "no server fault, no retry";
    EXPECT_EQ(retry->clears, 1);
}

TEST(CommonAPI, CachesUnderTheURLThatWasSetDuringTheLoad) {
    Fixture f({answer(rovers)});
    f.remote->onRequest = [&f] { f.api.update(URL::parse("http://localhost/other")); };
    EXPECT_TRUE(f.load());
    EXPECT_FALSE(f.caches(url));
    EXPECT_TRUE(f.caches("http://localhost/other"));
}

}  // namespace
}  // namespace corvane
