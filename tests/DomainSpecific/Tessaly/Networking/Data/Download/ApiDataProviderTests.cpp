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

const std::string validator = "Sat, 21 Nov 2026 15:00:00 GMT";

TEST(ApiResponseRules, TakeTheFirstThatMatches) {
    const Data body("{}");

    const struct {
        int status;
        std::vector<HTTPHeaderField> fields;
        std::optional<Data> body;
        ApiResponse expected;
    } rows[] = {
        {304, {{"Last-Modified", "then"}}, body, {std::nullopt, "then", true, std::nullopt, 304}},
        {304, {}, body, {body, std::nullopt, true, std::nullopt, 304}},
        {304, {}, {}, {PlatformError("Decryption error", 9998), 304}},
        {200, {{"Last-Modified", "then"}}, body, {body, "then", false, std::nullopt, 200}},
        {200, {{"Last-Modified", "then"}}, {}, {PlatformError("Received empty data", 99999), 200}},
    };

    for (const auto& row : rows) {
        const auto head = std::make_shared<const HTTPURLResponse>(*URL::parse("http://localhost/"), row.status,
                                                                  "HTTP/1.1", row.fields);
        const auto response = apiResponse(SimpleHttpResponse(nullptr, row.body, head, std::nullopt));
        const auto parts = [](const ApiResponse& each) {
            return std::tuple(each.data(), each.lastModified(), each.isNotModified(),
                              each.error().transform(&AnyError::domain), each.statusCode());
        };
        EXPECT_EQ(parts(response), parts(row.expected));
    }
    const AnyError lost = makeURLError(URLError::networkConnectionLost);
    const auto both = apiResponse(SimpleHttpResponse(nullptr, body, nullptr, lost));
    EXPECT_TRUE(both.data() == body && both.error()) << "a body goes with whatever came";
    EXPECT_EQ(apiResponse(SimpleHttpResponse(lost)).error()->code(), -1005);
}

TEST_F(ApiDataProviderTest, KeepsEveryBodyAndAnswersA304WithTheLast) {
    LoopbackResponse next = LoopbackResponse::json("{\"a\":1}").with("Last-Modified", validator);
    LoopbackResponse notModified = LoopbackResponse{.status = 304}.with("Last-Modified", validator);
    server.route("GET", "/a", [&](const LoopbackRequest& request) {
        return request.header("If-Modified-Since") == validator ? notModified : next;
    });
    const auto plain = request("/a");
    const auto conditional = request("/a", {.ifModifiedSince = validator});

    const ApiResponse unknown = load(conditional);
    EXPECT_FALSE(unknown.data() || unknown.error() || unknown.isNotModified() || unknown.statusCode() ||
                 unknown.lastModified());

    EXPECT_EQ(load(plain).statusCode(), 200);
    const ApiResponse kept = load(conditional);
    EXPECT_EQ(kept.data(), Data("{\"a\":1}"));
    EXPECT_EQ(kept.lastModified(), validator);
    EXPECT_TRUE(kept.isNotModified() && !kept.statusCode() && !kept.error());

    notModified = {.status = 304};
    next = LoopbackResponse::json("{\"down\":true}", 503);
    EXPECT_EQ(code(runBlocking(provider->loadData(conditional, "plain"))), 9998);
    EXPECT_EQ(runBlocking(provider->loadData(plain, "plain")).statusCode(), 503);
    EXPECT_EQ(load(conditional).data(), Data("{\"a\":1}")) << "the plain road leaves the cache alone";
    EXPECT_EQ(load(plain).statusCode(), 503);
    const ApiResponse last = load(conditional);
    EXPECT_EQ(last.data(), Data("{\"down\":true}")) << "whatever the status";
    EXPECT_FALSE(last.isNotModified()) << "a 304 without a validator of its own";
}

TEST_F(ApiDataProviderTest, AnswersAPostWithoutPayloadItself) {
    const auto empty = request("/post", {.usePost = true});
    std::optional<ApiResponse> response;
    provider->loadData(empty, "context", [&](const ApiResponse& given) { response = given; });
    ASSERT_TRUE(response) << "before loadData returned";
    EXPECT_EQ(response->data(), Data("{}"));
    EXPECT_FALSE(response->statusCode() || response->error() || response->isNotModified());
    EXPECT_EQ(cache->lookup(server.url("/post")), std::nullopt);
    EXPECT_EQ(load(empty).data(), Data("{}"));
    EXPECT_EQ(cache->lookup(server.url("/post"))->data, Data("{}")) << "kept like any other body";

    server.route("POST", "/post", LoopbackResponse::json("[1]"));
    EXPECT_EQ(load(request("/post", {.payload = Data("{\"q\":1}"), .usePost = true})).data(), Data("[1]"));
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
