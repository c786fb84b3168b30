#include <future>

#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/Private/ApiResponseRules.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

#include "DownloadTest.hpp"

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::MatchesRegex;
using ApiDataProviderTest = DownloadTest;

TEST(ApiResponseRules, TellWhatAResponseIsOnThePlainRoadAndPastTheCache) {
    using Text = std::optional<std::string>;
    using Parts = std::tuple<std::optional<Data>, Text, bool, std::int64_t, std::optional<int>>;
    const Data a("{}"), b("[]"), moved("304");
    constexpr auto none = std::nullopt;

    // One after the other, past the same cache.
    const struct {
        int status;
        Text lastModified;
        std::optional<Data> body;
        Parts plain, cached;
    } rows[] = {
        {304, "then", none, {none, "then", true, 0, 304}, {none, none, false, 0, none}},
        {200, "then", a, {a, "then", false, 0, 200}, {a, "then", false, 0, 200}},
        {304, "now", moved, {none, "now", true, 0, 304}, {a, "then", true, 0, none}},
        {304, none, moved, {moved, none, true, 0, 304}, {a, "then", true, 0, none}},
        {304, none, none, {none, none, false, 9998, 304}, {a, "then", false, 0, none}},
        {503, none, b, {b, none, false, 0, 503}, {b, none, false, 0, 503}},
        {200, "then", none, {none, none, false, 99999, 200}, {none, none, false, 99999, 200}},
        {304, "now", none, {none, "now", true, 0, 304}, {b, none, true, 0, none}},
    };

    const auto cache = DataCache::make("cache.json");
    const auto parts = [](const ApiResponse& each) {
        const std::int64_t code = each.error() ? each.error()->code() : 0;
        return Parts(each.data(), each.lastModified(), each.isNotModified(), code, each.statusCode());
    };
    for (const auto& row : rows) {
        std::vector<HTTPHeaderField> fields;
        if (row.lastModified) fields.emplace_back("Last-Modified", *row.lastModified);
        const auto head =
            std::make_shared<const HTTPURLResponse>(*URL::parse("http://h"), row.status, "HTTP/1.1", fields);
        const ApiResponse plain = apiResponse(SimpleHttpResponse(nullptr, row.body, head, none));
        EXPECT_EQ(parts(plain), row.plain);
        EXPECT_EQ(parts(cachedResponse(plain, "key", *cache, Date())), row.cached);
    }
    const AnyError lost = makeURLError(URLError::networkConnectionLost);
    const auto both = apiResponse(SimpleHttpResponse(nullptr, a, nullptr, lost));
    EXPECT_TRUE(both.data() == a && both.error()) << "a body goes with whatever came";
    EXPECT_EQ(apiResponse(SimpleHttpResponse(lost)).error()->code(), -1005);
}

TEST_F(ApiDataProviderTest, PassesOnlyTheCachedRoadByTheCache) {
    server.route("GET", "/a", [](const LoopbackRequest& request) {
        return request.header("If-Modified-Since") ? LoopbackResponse{.status = 304} : LoopbackResponse::json("[1]");
    });
    EXPECT_EQ(runBlocking(provider->loadData(request("/a"), "plain")).statusCode(), 200);
    EXPECT_EQ(cache->lookup(server.url("/a")), std::nullopt);
    EXPECT_EQ(load(request("/a")).statusCode(), 200);
    EXPECT_EQ(load(ApiRequest::make({.url = url("/a"), .ifModifiedSince = "then"})).data(), Data("[1]"));
}

TEST_F(ApiDataProviderTest, AnswersAPostWithoutPayloadItself) {
    const auto empty = ApiRequest::make({.url = url("/post"), .usePost = true});
    std::optional<ApiResponse> response;
    provider->loadData(empty, "context", [&](const ApiResponse& given) { response = given; });
    ASSERT_TRUE(response) << "before loadData returned";
    EXPECT_EQ(response->data(), Data("{}"));
    EXPECT_FALSE(response->statusCode() || response->error() || response->isNotModified());
    EXPECT_EQ(cache->lookup(server.url("/post")), std::nullopt);
    EXPECT_EQ(load(empty).data(), Data("{}"));
    EXPECT_EQ(cache->lookup(server.url("/post"))->data, Data("{}")) << "kept like any other body";

    server.route("POST", "/post", LoopbackResponse::json("[1]"));
    EXPECT_EQ(load(ApiRequest::make({.url = url("/post"), .payload = Data("{\"q\":1}"), .usePost = true})).data(),
              Data("[1]"));
    EXPECT_EQ(server.requests().front().body, "{\"q\":1}");
}

TEST_F(ApiDataProviderTest, CallsBackOnTheStatedThreadAlsoWhenItIsGone) {
    testing::LogRecorder log;
    server.route("GET", "/", LoopbackResponse::json("{}"));
    EXPECT_THAT(provider->syncQueue()->label(),
                MatchesRegex("org.corvane.ApiDataSyncQueue.[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
    Arrivals<ApiResponse> plain;
    Arrivals<ApiResponse> cached;
    provider->loadData(request("/"), "a", plain.callback());
    provider->loadData(request("/"), "nobody wants to know", nullptr);
    provider->loadCachedData(request("/"), "b", cached.callback());
    provider.reset();
    EXPECT_FALSE(plain.wait().second);
    EXPECT_TRUE(cached.wait().second);
    EXPECT_THAT(log.messages("Concurrency"),
                ElementsAre("asyncOnMain() dispatched from: loadCachedData(request:context:callback:), in "
                            "ApiDataProvider, at line: 164"));
    EXPECT_STREQ(log.entries().front().origin.file, "Domain Specific/Tessaly/Networking/Data/Download/ApiDataProvider");
}

TEST_F(ApiDataProviderTest, CancelsTheLoadOfAContext) {
    server.route("GET", "/silent", LoopbackResponse().with(LoopbackFault::neverAnswer));
    server.route("GET", "/", LoopbackResponse::json("{}"));
    Arrivals<ApiResponse> cancelled;
    Arrivals<ApiResponse> answered;
    provider->cancelLoadRequest("table");
    provider->loadCachedData(request("/silent"), "table", cancelled.callback());
    provider->cancelLoadRequest("unknown");
    provider->loadCachedData(request("/"), "another", answered.callback());
    EXPECT_EQ(code(answered.wait().first), 0) << "contexts do not meet";
    provider->loadCachedData(request("/"), "table", answered.callback());
    EXPECT_EQ(code(cancelled.wait().first), -999) << "replaced";
    EXPECT_EQ(code(answered.wait(2).first), 0);

    provider->loadData(request("/silent"), "table", cancelled.callback());
    provider->cancelLoadRequest("table");
    EXPECT_EQ(code(cancelled.wait(2).first), -999);
}

TEST_F(ApiDataProviderTest, LetsAReplacedLoadTakeItsSuccessorOffTheBooks) {
    server.route("GET", "/", LoopbackResponse::json("{}"));
    server.route("GET", "/silent", LoopbackResponse().with(LoopbackFault::neverAnswer));
    server.route("GET", "/held", LoopbackResponse::held());
    // While this callback blocks the session's queue, the replaced load cannot complete.
    std::promise<void> blocked;
    std::promise<void> gate;
    provider->loadData(request("/"), "gate", [&](const ApiResponse&) {
        blocked.set_value();
        gate.get_future().wait();
    });
    blocked.get_future().wait();
    Arrivals<ApiResponse> responses;
    provider->loadData(request("/silent"), "table", responses.callback());
    provider->loadData(request("/held"), "table", responses.callback());
    provider->syncQueue()->sync([] {});
    gate.set_value();
    EXPECT_EQ(code(responses.wait().first), -999);

    provider->cancelLoadRequest("table");
    provider->syncQueue()->sync([] {});
    server.waitForHeldExchange().value().respond(LoopbackResponse::json("{}"));
    EXPECT_EQ(code(responses.wait(2).first), 0) << "nothing was found to cancel";
}

}  // namespace
}  // namespace corvane
