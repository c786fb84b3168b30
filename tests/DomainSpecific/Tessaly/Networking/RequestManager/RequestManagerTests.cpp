#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/Private/ResponseInterpretation.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManager.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>

#include "../Data/Download/DownloadTest.hpp"

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Reason = ApiDataProviderFailureReason;
using Result = RequestManagerResult;

ApiResponse body(std::string_view text, std::optional<std::string> lastModified = std::nullopt) {
    return ApiResponse(Data(text), std::move(lastModified), false, std::nullopt, 200);
}

TEST(ResponseInterpretation, TellsResultsFailuresAndWhatIsReported) {
    const AnyError timeout = makeURLError(URLError::timedOut);
    const AnyError lost = makeURLError(URLError::networkConnectionLost);
    const AnyError foreignTimeout = PlatformError("Elsewhere", -1001, "too late");
    const AnyError empty = SimpleHttpResponse::Errors::emptyData();
    const auto invalid = [](const AnyError& error) {
        return Result::failure(Reason::invalidResponse(error.localizedDescription()));
    };

    const struct {
        ApiResponse response;
        std::optional<Result> result;
        std::optional<std::int64_t> reported;
    } rows[] = {
        {{makeURLError(URLError::cancelled), 500}, std::nullopt, std::nullopt},
        {{PlatformError("Elsewhere", -999), std::nullopt}, std::nullopt, std::nullopt},
        {{timeout, std::nullopt}, invalid(timeout), -1001},
        {{foreignTimeout, 500}, invalid(foreignTimeout), -1001},
        {{lost, std::nullopt}, invalid(lost), std::nullopt},
        {{empty, 399}, invalid(empty), std::nullopt},
        {{empty, 400}, invalid(empty), 400},
        {{empty, 503}, invalid(empty), 503},
        {{lost, -1001}, invalid(lost), -1001},
        {{std::nullopt, 304}, Result::failure(Reason::undefined()), std::nullopt},
        {{std::nullopt, "then", true, std::nullopt, 304}, Result::notModified(), std::nullopt},
        {body("{\"a\":[1]}", "then"), Result::success({{"a", JSONArray{1}}}, "then"), std::nullopt},
        {{Data("{}"), std::nullopt, true, std::nullopt, std::nullopt}, Result::success({}, std::nullopt), std::nullopt},
        {{Data("{}"), std::nullopt, false, std::nullopt, 503}, Result::success({}, std::nullopt), std::nullopt},
        {body("<html>"), Result::failure(Reason::invalidJson()), 9997},
    };

    for (const auto& [response, result, reported] : rows) {
        SCOPED_TRACE(result ? result->description() : "cancelled");
        const auto interpretation = interpret(response);
        EXPECT_EQ(interpretation.result, result);
        EXPECT_EQ(interpretation.reportedCode, reported);
    }
    EXPECT_EQ(rows[4].result->description(),
              R"(failure(invalidResponse(description: "The network connection was lost.")))");
    EXPECT_EQ(rows[11].result->description(), R"(success({"a":[1]}, lastModified: then))");
}

TEST(ResponseInterpretationDeathTest, StopsForJSONThatIsNoObject) {
    for (const char* const json : {"[]", "[{}]", "7", "\"text\"", "null", "true"})
        EXPECT_DEATH(static_cast<void>(interpret(body(json))), "JSON that is no object") << json;
}

class Tracker : public ErrorEventTracker {
  public:
    void trackErrorEvent(const std::string& url, std::int64_t code) override {
        const std::lock_guard guard(lock);
        events.push_back(URL::parse(url)->path() + ' ' + std::to_string(code));
    }

    std::mutex lock;
    std::vector<std::string> events;
};

class RequestManagerTest : public DownloadTest {
  protected:
    [[nodiscard]] Result perform(std::string_view target, bool useCaching = true) const {
        Arrivals<Result> results;
        manager->performApi({.request = request(target), .context = "test", .options = {}}, useCaching,
                            results.callback());
        const auto arrived = results.wait();
        EXPECT_EQ(arrived.front().isOnMain, useCaching);
        return arrived.front().value;
    }

    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>();
    std::shared_ptr<RequestManager> manager = RequestManager::make(provider, tracker);
};

TEST_F(RequestManagerTest, AnswersOnBothRoads) {
    server.route("GET", "/", LoopbackResponse::json("{\"goals\":3}").with("Last-Modified", "then"));
    for (const bool useCaching : {true, false}) {
        EXPECT_EQ(perform("/", useCaching), Result::success({{"goals", 3}}, "then"));
        EXPECT_TRUE(perform("/missing", useCaching).isFailure());
    }
    EXPECT_THAT(tracker->events, ElementsAre("/missing 404", "/missing 404"));
}

TEST_F(RequestManagerTest, ReportsToATrackerThatExistsWhileItExists) {
    server.route("GET", "/held", LoopbackResponse::held());
    EXPECT_EQ(manager->errorTracker(), tracker);
    std::weak_ptr<Tracker> weak = tracker;
    Arrivals<Result> results;
    const auto performHeld = [&] {
        manager->performApi({.request = request("/held"), .context = "held", .options = {}}, true, results.callback());
    };
    performHeld();
    manager.reset();
    server.waitForHeldExchange()->respond({.status = 500});
    EXPECT_TRUE(results.wait().front().value.isFailure()) << "the completion comes without the manager";
    EXPECT_THAT(tracker->events, IsEmpty());

    manager = RequestManager::make(provider);
    manager->setErrorTracker(tracker);
    performHeld();
    server.waitForHeldExchange()->respond({.status = 500});
    EXPECT_TRUE(results.wait(2).back().value.isFailure());
    EXPECT_THAT(tracker->events, ElementsAre("/held 500"));

    tracker.reset();
    EXPECT_TRUE(weak.expired());
    performHeld();
    server.waitForHeldExchange()->respond({.status = 500});
    EXPECT_TRUE(results.wait(3).back().value.isFailure());
}

TEST_F(RequestManagerTest, SwallowsCancelledAndReplacedLoads) {
    server.route("GET", "/held", LoopbackResponse::held());
    server.route("GET", "/", LoopbackResponse::json("{}"));
    Arrivals<std::string> arrivals;
    const auto performHeld = [&] {
        // What goes with a completion that is not called is let go all the same.
        std::shared_ptr<void> owned(nullptr, [arrive = arrivals.callback()](void*) { arrive("gone"); });
        manager->performApi({.request = request("/held"), .context = "test", .options = {}}, true,
                            [owned = std::move(owned)](const Result&) { FAIL(); });
    };
    performHeld();
    EXPECT_TRUE(perform("/").isSuccess());
    EXPECT_EQ(arrivals.wait().back().value, "gone");
    const std::size_t former = server.requestCount();
    performHeld();
    ASSERT_TRUE(server.waitForRequests(former + 1));
    manager->cancelRequest("test");
    EXPECT_EQ(arrivals.wait(2).back().value, "gone");
    EXPECT_THAT(tracker->events, IsEmpty());
}

TEST_F(RequestManagerTest, SurvivesWhateverABackEndSends) {
    const auto failure = [](Reason reason) { return std::optional(Result::failure(std::move(reason))); };
    const auto isJson = [&](JSONDictionary json) {
        return std::optional(Result::success(std::move(json), std::nullopt));
    };
    const std::string nested = std::string(100'000, '[') + std::string(100'000, ']');

    const struct {
        LoopbackResponse response;
        std::optional<Result> result;
    } rows[] = {
        {LoopbackResponse::json("<html></html>"), failure(Reason::invalidJson())},
        {LoopbackResponse::json("{\"a\":[1,"), failure(Reason::invalidJson())},
        {LoopbackResponse::json("{\"a\":\"\xFF\"}"), failure(Reason::invalidJson())},
        {LoopbackResponse::json("{} x"), failure(Reason::invalidJson())},
        {LoopbackResponse::json(" \n"), failure(Reason::invalidJson())},
        {LoopbackResponse::json(nested), failure(Reason::invalidJson())},
        {LoopbackResponse::json("{\"a\":" + nested + "}"), failure(Reason::invalidJson())},
        {LoopbackResponse::json("{\"a\":1e400}"), failure(Reason::invalidJson())},
        {LoopbackResponse::json("{\"a\":18446744073709551615}"), isJson({{"a", UINT64_MAX}})},
        {LoopbackResponse::json("{\"a\":-18446744073709551616}"), isJson({{"a", -0x1p64}})},
        {LoopbackResponse::json(""), std::nullopt},
        {LoopbackResponse{.status = 304}, failure(Reason::undefined())},
        {LoopbackResponse::json("{\"half\":1}").with(testing::LoopbackFault::truncatedBody), std::nullopt},
        {LoopbackResponse::json("{\"a\":1}").with(testing::LoopbackFault::brokenGzip), std::nullopt},
    };

    int number = 0;
    for (const auto& [response, expected] : rows) {
        const std::string target = '/' + std::to_string(number++);
        SCOPED_TRACE(target + ' ' + response.body.substr(0, 40));
        server.route("GET", target, response);
        const Result result = perform(target);
        if (expected) {
            EXPECT_EQ(result, *expected);
        } else {
            ASSERT_TRUE(result.isFailure());
            EXPECT_TRUE(result.asFailure()->reason.isInvalidResponse());
        }
    }
    EXPECT_EQ(tracker->events, std::vector<std::string>({"/0 9997", "/1 9997", "/2 9997", "/3 9997", "/4 9997",
                                                         "/5 9997", "/6 9997", "/7 9997"}));
}

}  // namespace
}  // namespace corvane
