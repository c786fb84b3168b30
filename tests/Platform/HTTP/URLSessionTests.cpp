#include "SessionFixture.hpp"

namespace corvane {
namespace {

using URLSessionTest = SessionTest;

TEST_F(URLSessionTest, SendsWhatWasAskedForAndNothingElse) {
    server.route("*", "/echo", [](const LoopbackRequest& request) {
        return LoopbackResponse::json(request.method + ' ' + request.body);
    });

    const struct {
        const char* method;
        std::optional<std::string> body;
        std::string answer;
        std::optional<std::string> length;
    } cases[] = {
        {"GET", std::nullopt, "GET ", std::nullopt},
        {"POST", R"({"a":1})", R"(POST {"a":1})", "7"},
        {"POST", "", "POST ", "0"},
        {"PUT", std::string("x\0\xff", 3), std::string("PUT x\0\xff", 7), "3"},
        {"PATCH", std::nullopt, "PATCH ", "0"},
        {"DELETE", std::nullopt, "DELETE ", std::nullopt},
        {"GET", "odd", "GET odd", "3"},
        {"HEAD", std::nullopt, "", std::nullopt},
        {"POST", std::string(300'000, 'x'), "POST " + std::string(300'000, 'x'), "300000"},
    };

    for (const auto& [method, body, answer, length] : cases) {
        auto asked = request("/echo");
        asked.setHttpMethod(method);
        if (body) asked.setHttpBody(Data(std::string_view(*body)));
        const auto completion = load(asked);
        EXPECT_EQ(completion.code(), 0) << method;
        EXPECT_EQ(completion.status(), 200) << method;
        EXPECT_TRUE(completion.body() == answer) << method;
        const auto seen = server.requests().back();
        EXPECT_EQ(seen.method, method);
        std::vector<std::string> names;
        for (const auto& field : seen.headers)
            names.push_back(field.name);
        std::vector<std::string> wanted{"Host", "User-Agent", "Accept", "Accept-Encoding"};
        if (length) wanted.emplace_back("Content-Length");
        EXPECT_THAT(names, ::testing::UnorderedElementsAreArray(wanted)) << method;
        EXPECT_EQ(seen.header("Content-Length"), length) << method;
        EXPECT_EQ(seen.header("User-Agent")->substr(0, 8), "Corvane/");
    }
    EXPECT_EQ(server.connectionsAccepted(), 1U);
}

TEST_F(URLSessionTest, SendsFieldsByteForByte) {
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.httpAdditionalHeaders = {{"X-App", "1"}, {"accept", "never"}};
    auto asked = request("/x");
    asked.setValue("Fri, 15  Mar 2024 12:00:00 gmt", "If-Modified-Since");
    asked.setValue("", "X-Empty");
    asked.setValue("text/plain", "Accept");
    asked.setValue("99", "Content-Length");
    EXPECT_EQ(load(URLSession::make(configuration), asked).status(), 404);
    const auto seen = server.requests().back();
    EXPECT_EQ(seen.header("If-Modified-Since"), "Fri, 15  Mar 2024 12:00:00 gmt");
    EXPECT_EQ(seen.header("X-Empty"), "");
    EXPECT_EQ(seen.header("Accept"), "text/plain");
    EXPECT_EQ(seen.header("x-app"), "1");
    EXPECT_FALSE(seen.header("Content-Length"));

    configuration.httpAdditionalHeaders = {{"X-App", "a\r\nX-Evil: 1"}};
    EXPECT_TRUE(load(URLSession::make(configuration), request("/x")).error == URLError::badURL);
    EXPECT_EQ(server.connectionsAccepted(), 1U) << "refused without the network";
}

TEST_F(URLSessionTest, DeliversOnItsQueueAndLetsTheHandlerGo) {
    const auto queue = DispatchQueue::serial("test.delegate");
    useConfiguration(URLSessionConfiguration::ephemeral(), std::make_shared<InvalidationWitness>(), queue);
    server.route("GET", "/x", LoopbackResponse::json("x"));
    auto capture = std::make_shared<int>();
    const std::weak_ptr<int> captured = capture;
    std::shared_ptr<URLSessionDataTask> task;
    task = session->dataTask(request("/x"), [&, capture = std::move(capture), handler = completions.handler()](
                                                auto data, auto response, auto error) mutable {
        EXPECT_TRUE(queue->isCurrent());
        EXPECT_EQ(task->state(), URLSessionTaskState::completed);
        EXPECT_EQ(task->response(), response);
        task->cancel();
        handler(std::move(data), std::move(response), std::move(error));
    });
    ++expected;
    EXPECT_EQ(task->state(), URLSessionTaskState::suspended);
    EXPECT_FALSE(captured.expired());
    task->resume();
    EXPECT_EQ(waitForAll().body(), "x");
    queue->sync([] {});
    EXPECT_TRUE(captured.expired());
    task->cancel();
    task->resume();
    EXPECT_EQ(task->state(), URLSessionTaskState::completed);
}

TEST_F(URLSessionTest, HoldsASuspendedTasksCompletionBackUntilItIsResumedOrTheSessionCancelled) {
    server.route("GET", "/held", LoopbackResponse::held());
    server.route("GET", "/x", LoopbackResponse::json("x"));
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.maximumConnectionsPerHost = 1;
    for (const bool isResumed : {true, false}) {
        const auto narrow = URLSession::make(configuration);
        Completions own;
        auto task = narrow->dataTask(request("/held"), own.handler());
        task->resume();
        const auto exchange = server.waitForHeldExchange();
        ASSERT_TRUE(exchange);
        task->suspend();
        EXPECT_EQ(task->state(), URLSessionTaskState::suspended);
        if (!isResumed) task.reset();  // so that nobody holds it
        exchange->respond(LoopbackResponse::json("late"));
        // The one connection carries the next request only when the suspended task's response has been read.
        EXPECT_EQ(load(narrow, request("/x")).body(), "x");
        EXPECT_TRUE(own.all().empty());
        if (isResumed) {
            task->resume();
            EXPECT_EQ(own.wait().body(), "late");
        } else {
            narrow->invalidateAndCancel();
            EXPECT_TRUE(own.wait().error == URLError::cancelled);
        }
        EXPECT_EQ(own.all().size(), 1U);
    }
}

TEST_F(URLSessionTest, LimitsTheBodyItDecodes) {
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.maximumResponseBytes = 10;
    const auto small = URLSession::make(configuration);
    using Framing = LoopbackResponse::Framing;
    for (const auto framing : {Framing::contentLength, Framing::chunked, Framing::untilClose}) {
        server.route("GET", "/10", LoopbackResponse::json("0123456789").with(framing));
        server.route("GET", "/11", LoopbackResponse::json("0123456789a").with(framing));
        EXPECT_EQ(load(small, request("/10")).body(), "0123456789");
        const auto refused = load(small, request("/11"));
        EXPECT_TRUE(refused.error == URLError::dataLengthExceedsMaximum);
        EXPECT_FALSE(refused.data);
        EXPECT_EQ(refused.status(), 200);
    }
    auto head = request("/11");
    head.setHttpMethod("HEAD");
    EXPECT_EQ(load(small, head).code(), 0);
}

TEST_F(URLSessionTest, KeepsCookiesForItselfIfAtAll) {
    server.route("GET", "/set", LoopbackResponse::json("1").with("Set-Cookie", "a=1; Path=/"));
    const auto keeper = URLSession::make(URLSessionConfiguration::defaultConfiguration());
    const auto other = URLSession::make(URLSessionConfiguration::defaultConfiguration());
    for (const auto& each : {keeper, session})
        EXPECT_EQ(load(each, request("/set")).status(), 200);
    static_cast<void>(load(keeper, request("/x")));
    EXPECT_EQ(server.requests().back().header("Cookie"), "a=1");
    for (const auto& each : {other, session}) {
        static_cast<void>(load(each, request("/x")));
        EXPECT_FALSE(server.requests().back().header("Cookie"));
    }
}

TEST_F(URLSessionTest, ReadsNoProxyFromTheEnvironment) {
    // Port 9 has no listener; a client that heeds these cannot reach the server.
    for (const char* const name : {"http_proxy", "ALL_PROXY", "all_proxy"})
        ::setenv(name, "http://127.0.0.1:9", 1);
    EXPECT_EQ(load(request("/x")).status(), 404);
    for (const char* const name : {"http_proxy", "ALL_PROXY", "all_proxy"})
        ::unsetenv(name);
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.proxy = server.url("");
    ::setenv("no_proxy", "*", 1);
    EXPECT_EQ(load(URLSession::make(configuration), URLRequest(*URL::parse("http://nowhere.invalid/x"))).status(), 404);
    EXPECT_EQ(server.requests().back().target, "http://nowhere.invalid/x");
    ::unsetenv("no_proxy");
}

}  // namespace
}  // namespace corvane
