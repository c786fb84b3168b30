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
using ::testing::SizeIs;
using ApiDataProviderTest = DownloadTest;

const std::string validator = "Sat, 21 Nov 2026 15:00:00 GMT";

TEST(ApiResponseRules, TakeTheFirstThatMatches) {
    const struct {
        std::optional<int> status;
        std::optional<std::string> lastModified;
        std::optional<Data> body;
        std::optional<AnyError> error;
        std::optional<std::string> expectedLastModified;
        bool isNotModified;
        std::int64_t expectedCode;
    } rows[] = {
        {304, validator, {}, {}, validator, true, 0},
        {304, validator, Data("{}"), {}, validator, true, 0},
        {304, {}, Data("{}"), {}, {}, true, 0},
        {304, {}, {}, {}, {}, false, 9998},
        {200, validator, Data("{}"), {}, validator, false, 0},
        {200, validator, {}, {}, {}, false, 99999},
        {503, {}, Data("{}"), {}, {}, false, 0},
        {{}, {}, {}, makeURLError(URLError::timedOut), {}, false, -1001},
        {{}, {}, Data("half"), makeURLError(URLError::timedOut), {}, false, -1001},
    };

    for (const auto& row : rows) {
        SCOPED_TRACE(::testing::Message() << row.status.value_or(0) << ' ' << row.expectedCode);
        std::vector<HTTPHeaderField> fields;
        if (row.lastModified) fields.push_back({"Last-Modified", *row.lastModified});
        const auto head = row.status ? std::make_shared<const HTTPURLResponse>(*URL::parse("http://localhost/"),
                                                                               *row.status, "HTTP/1.1", fields)
                                     : nullptr;
        const ApiResponse response = apiResponse(SimpleHttpResponse(nullptr, row.body, head, row.error));
        const bool dropsBody = row.status == 304 && row.lastModified;
        EXPECT_EQ(response.data(), dropsBody ? std::nullopt : row.body);
        EXPECT_EQ(response.lastModified(), row.expectedLastModified);
        EXPECT_EQ(response.isNotModified(), row.isNotModified);
        EXPECT_EQ(response.error() ? response.error()->code() : 0, row.expectedCode);
        EXPECT_EQ(response.statusCode(), row.status);
        if (row.expectedCode == 9998) {
            EXPECT_EQ(response.error()->domain(), "Decryption error");
        }
    }
}

TEST_F(ApiDataProviderTest, KeepsEveryBodyAndAnswersA304WithTheLast) {
    LoopbackResponse next = LoopbackResponse::json("{\"a\":1}").with("Last-Modified", validator);
    LoopbackResponse notModified = LoopbackResponse{.status = 304}.with("Last-Modified", validator);
    server.route("GET", "/a", [&](const LoopbackRequest& request) {
        return request.header("If-Modified-Since") == validator ? notModified : next;
    });
    const auto plain = request("/a");
    const auto conditional = request("/a", {.url = somewhere(), .ifModifiedSince = validator});

    const ApiResponse unknown = load(conditional);
    EXPECT_FALSE(unknown.data() || unknown.error() || unknown.isNotModified() || unknown.statusCode() ||
                 unknown.lastModified());

    EXPECT_EQ(load(plain).statusCode(), 200);
    const ApiResponse kept = load(conditional);
    EXPECT_EQ(kept.data(), Data("{\"a\":1}"));
    EXPECT_EQ(kept.lastModified(), validator);
    EXPECT_TRUE(kept.isNotModified());
    EXPECT_FALSE(kept.statusCode() || kept.error());

    next = LoopbackResponse::json("{\"down\":true}", 503);
    EXPECT_EQ(load(plain, false).statusCode(), 503);
    EXPECT_EQ(load(conditional).data(), Data("{\"a\":1}")) << "the plain road leaves the cache alone";
    EXPECT_EQ(load(plain).statusCode(), 503);
    EXPECT_EQ(load(conditional).data(), Data("{\"down\":true}")) << "whatever the status";
    EXPECT_TRUE(load(conditional, false).isNotModified());

    notModified = {.status = 304};
    EXPECT_EQ(code(load(conditional, false)), 9998) << "without a Last-Modified, on the plain road";
    EXPECT_EQ(load(conditional).data(), Data("{\"down\":true}"));
    EXPECT_FALSE(load(conditional).isNotModified() || load(conditional).error()) << "and on the cached one";

    next = LoopbackResponse{.status = 204};
    EXPECT_EQ(code(load(plain)), 99999);
    EXPECT_EQ(load(conditional).data(), Data("{\"down\":true}")) << "what has no body replaces none";
}

TEST_F(ApiDataProviderTest, AnswersAPostWithoutPayloadItself) {
    const auto empty = request("/post", {.url = somewhere(), .usePost = true});
    bool isCalled = false;
    provider->loadData(empty, "context", [&](const ApiResponse& response) {
        isCalled = true;
        EXPECT_EQ(response.data(), Data("{}"));
        EXPECT_FALSE(response.statusCode() || response.error() || response.lastModified() || response.isNotModified());
    });
    EXPECT_TRUE(isCalled) << "before loadData returned";
    EXPECT_THAT(cache->cache(), SizeIs(0));

    EXPECT_EQ(load(empty).data(), Data("{}"));
    EXPECT_EQ(cache->lookup(server.url("/post"))->data, Data("{}")) << "kept like any other body";

    server.route("POST", "/post", LoopbackResponse::json("[1]"));
    EXPECT_EQ(load(request("/post", {.url = somewhere(), .payload = Data("{\"q\":1}"), .usePost = true})).data(),
              Data("[1]"));
    EXPECT_EQ(server.requests().front().body, "{\"q\":1}");
    EXPECT_EQ(server.requestCount(), 1U);
}

TEST_F(ApiDataProviderTest, LogsItsHopToTheMainThread) {
    testing::LogRecorder log;
    server.route("GET", "/", LoopbackResponse::json("{}"));
    EXPECT_EQ(load(request("/")).data(), Data("{}"));
    EXPECT_THAT(log.messages("Concurrency"),
                ElementsAre("asyncOnMain() dispatched from: loadCachedData(request:context:callback:), in "
                            "ApiDataProvider, at line: 164"));
    EXPECT_STREQ(log.entries().front().origin.file, "Domain Specific/Tessaly/Networking/Data/Download/ApiDataProvider");
    EXPECT_THAT(provider->syncQueue()->label(),
                MatchesRegex("org.corvane.ApiDataSyncQueue.[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
    EXPECT_NE(provider->syncQueue()->label(), ApiDataProvider::make()->syncQueue()->label());
}

TEST_F(ApiDataProviderTest, CancelsTheLoadThatANewerOneReplaces) {
    server.route("GET", "/held", LoopbackResponse::held());
    server.route("GET", "/", LoopbackResponse::json("{}"));
    Arrivals<ApiResponse> responses;
    provider->loadCachedData(request("/held"), "table", responses.callback());
    provider->loadCachedData(request("/"), "another", responses.callback());
    EXPECT_EQ(responses.wait().front().value.data(), Data("{}")) << "contexts do not meet";
    provider->loadCachedData(request("/"), "table", responses.callback());
    const auto arrived = responses.wait(3);
    EXPECT_EQ(code(arrived[1].value), -999);
    EXPECT_EQ(arrived[2].value.data(), Data("{}"));
}

TEST_F(ApiDataProviderTest, CancelsByContext) {
    server.route("GET", "/held", LoopbackResponse::held());
    Arrivals<ApiResponse> responses;
    provider->cancelLoadRequest("table");
    provider->loadData(request("/held"), "table", responses.callback());
    ASSERT_TRUE(server.waitForRequests(1));
    provider->cancelLoadRequest("unknown");
    provider->cancelLoadRequest("table");
    EXPECT_EQ(code(responses.wait().front().value), -999);
}

TEST_F(ApiDataProviderTest, LetsAReplacedLoadTakeItsSuccessorOffTheBooks) {
    server.route("GET", "/", LoopbackResponse::json("{}"));
    server.route("GET", "/silent", LoopbackResponse().with(testing::LoopbackFault::neverAnswer));
    server.route("GET", "/held", LoopbackResponse::held());
    // While this callback blocks the session's queue, the replaced load cannot complete.
    std::promise<void> blocked;
    std::promise<void> gate;
    Arrivals<ApiResponse> responses;
    provider->loadData(request("/"), "gate", [&](const ApiResponse&) {
        blocked.set_value();
        gate.get_future().wait();
    });
    blocked.get_future().wait();
    provider->loadData(request("/silent"), "table", responses.callback());
    provider->loadData(request("/held"), "table", responses.callback());
    provider->syncQueue()->sync([] {});
    gate.set_value();
    EXPECT_EQ(code(responses.wait().front().value), -999);

    provider->cancelLoadRequest("table");
    provider->syncQueue()->sync([] {});
    const auto successor = server.waitForHeldExchange();
    ASSERT_TRUE(successor);
    successor->respond(LoopbackResponse::json("{}"));
    EXPECT_EQ(responses.wait(2).back().value.data(), Data("{}")) << "nothing was found to cancel";
}

TEST_F(ApiDataProviderTest, CallsBackWhenItIsGone) {
    server.route("GET", "/", LoopbackResponse::json("{}"));
    Arrivals<ApiResponse> responses;
    provider->loadData(request("/"), "a", responses.callback());
    provider->loadCachedData(request("/"), "b", responses.callback());
    provider.reset();
    for (const auto& [response, isOnMain] : responses.wait(2))
        EXPECT_EQ(response.data(), Data("{}"));
}

}  // namespace
}  // namespace corvane
