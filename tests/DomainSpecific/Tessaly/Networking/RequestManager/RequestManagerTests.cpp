#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/Private/ResponseInterpretation.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManager.hpp>

#include "tests/DomainSpecific/Tessaly/Networking/Data/Download/DownloadTest.hpp"

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Reason = ApiDataProviderFailureReason;
using Result = RequestManagerResult;

ApiResponse body(std::string_view text) {
    return ApiResponse(Data(text), "then", false, std::nullopt, 200);
}

TEST(ResponseInterpretation, TellsResultsFailuresAndWhatIsReported) {
    const PlatformError cancelled("Elsewhere", -999);
    const PlatformError timeout("Elsewhere", -1001, "too late");
    const PlatformError lost("Elsewhere", -1005, "lost");
    const std::string lostText = R"(failure(invalidResponse(description: "lost")))";

    const struct {
        ApiResponse response;
        std::optional<std::string> result;
        std::optional<std::int64_t> reported;
    } rows[] = {
        {{cancelled, 500}, std::nullopt, std::nullopt},
        {{timeout, 500}, R"(failure(invalidResponse(description: "too late")))", -1001},
        {{lost, std::nullopt}, lostText, {}},
        {{lost, 399}, lostText, {}},
        {{lost, 400}, lostText, 400},
        {{lost, -1001}, lostText, -1001},
        {{std::nullopt, 304}, "failure(undefined)", {}},
        {{std::nullopt, "then", true, std::nullopt, 304}, "notModified", {}},
        {body("{\"a\":[1]}"), R"(success({"a":[1]}, lastModified: then))", {}},
        {{Data("{}"), std::nullopt, true, std::nullopt, 503}, "success({}, lastModified: nil)", {}},
        {body("<html>"), "failure(invalidJson)", 9997},
        {body(std::string(100'000, '[')), "failure(invalidJson)", 9997},
    };

    for (const auto& [response, result, reported] : rows) {
        const auto interpretation = interpret(response);
        EXPECT_EQ(interpretation.result.transform(&Result::description), result);
        EXPECT_EQ(interpretation.reportedCode, reported) << result.value_or("cancelled");
    }
}

TEST(ResponseInterpretationDeathTest, StopsForJSONThatIsNoObject) {
    for (const char* const json : {"[{}]", "7", "null"})
        EXPECT_DEATH(static_cast<void>(interpret(body(json))), "JSON that is no object") << json;
}

struct Tracker : ErrorEventTracker {
    void trackErrorEvent(const std::string& url, std::int64_t code) override {
        events.push_back(URL::parse(url)->path() + ' ' + std::to_string(code));
    }

    std::vector<std::string> events;
};

class RequestManagerTest : public DownloadTest {
  protected:
    void perform(std::string_view target, bool useCaching = true) {
        manager->performApi({.request = request(target), .context = "test", .options = {}}, useCaching,
                            results.callback());
    }

    [[nodiscard]] Result result(std::string_view target, bool useCaching = true) {
        perform(target, useCaching);
        const auto [value, isOnMain] = results.wait(++count);
        EXPECT_EQ(isOnMain, useCaching);
        return value;
    }

    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>();
    std::shared_ptr<RequestManager> manager = RequestManager::make(provider, tracker);
    Arrivals<Result> results;
    std::size_t count = 0;
};

TEST_F(RequestManagerTest, AnswersAndReportsOnBothRoadsWhileItExists) {
    server.route("GET", "/", LoopbackResponse::json("{\"goals\":3}").with("Last-Modified", "then"));
    server.route("GET", "/cut", LoopbackResponse::json("{\"goals\":"));
    for (const bool useCaching : {true, false}) {
        EXPECT_EQ(result("/", useCaching), Result::success({{"goals", 3}}, "then"));
        EXPECT_TRUE(result(useCaching ? "/missing" : "/cut", useCaching).isFailure());
    }
    EXPECT_THAT(tracker->events, ElementsAre("/missing 404", "/cut 9997"));
    perform("/missing");
    manager.reset();
    EXPECT_TRUE(results.wait(5).first.isFailure()) << "the completion comes without the manager, the report does not";
    EXPECT_EQ(tracker->events.size(), 2U);

    manager = RequestManager::make(provider);
    manager->setErrorTracker(std::exchange(tracker, nullptr));
    EXPECT_EQ(manager->errorTracker(), nullptr) << "held weakly";
}

TEST_F(RequestManagerTest, SwallowsCancelledAndReplacedLoads) {
    server.route("GET", "/silent", LoopbackResponse().with(LoopbackFault::neverAnswer));
    server.route("GET", "/", LoopbackResponse::json("{}"));
    const auto expectSwallowed = [this](const std::function<void()>& end) {
        auto owned = std::make_shared<int>();
        const std::weak_ptr weak = owned;
        manager->performApi({.request = request("/silent"), .context = "test", .options = {}}, true,
                            [owned = std::move(owned)](const Result&) { FAIL(); });
        end();
        // What goes with a completion that is not called is let go all the same.
        while (!weak.expired())
            RunLoop::main().runOnce();
    };
    expectSwallowed([this] { EXPECT_TRUE(result("/").isSuccess()); });
    expectSwallowed([this] { manager->cancelRequest("test"); });
    EXPECT_THAT(tracker->events, IsEmpty());
}

}  // namespace
}  // namespace corvane
