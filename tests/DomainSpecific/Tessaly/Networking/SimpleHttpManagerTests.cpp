#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>

#include "Data/Download/DownloadTest.hpp"

namespace corvane {
namespace {

class SimpleHttpManagerTest : public ::testing::Test {
  protected:
    SimpleHttpManagerTest() { server.route("GET", "/", LoopbackResponse::json("{}").with("Set-Cookie", "visitor=7")); }

    const std::shared_ptr<SimpleHttpManager> manager = SimpleHttpManager::make();
    Arrivals<SimpleHttpResponse> responses;
    testing::LoopbackServer server;
    const std::optional<URL> url = URL::parse(server.url("/"));
};

TEST_F(SimpleHttpManagerTest, KeepsCookiesOfItsTwoSessionsApart) {
    std::vector<std::string> cookies;
    for (const bool isEphemeral : {false, true, true, false}) {
        manager->request(SimpleHttpRequest::make({.isEphemeral = isEphemeral, .url = url}), responses.callback());
        responses.wait(cookies.size() + 1);
        cookies.emplace_back(server.requests().back().header("Cookie").value_or("none"));
    }
    EXPECT_THAT(cookies, ::testing::ElementsAre("none", "none", "none", "visitor=7"));

    const auto& shared = SimpleHttpManager::sharedInstance();
    EXPECT_EQ(shared, SimpleHttpManager::sharedInstance());
    EXPECT_EQ(shared->session()->sessionDescription(), "SimpleHttpManager (Corvan)");
    EXPECT_EQ(shared->ephemeralSession()->sessionDescription(), "SimpleHttpManager (Corvan) \xE2\x80\x94 Ephemeral");
}

TEST_F(SimpleHttpManagerTest, RefusesARequestWithoutURLAtOnce) {
    std::optional<AnyError> error;
    manager->request(SimpleHttpRequest::make({}), [&](const SimpleHttpResponse& response) {
        error = response.error();
        EXPECT_FALSE(response.data() || response.lastModified() || response.statusCode() || response.isNotModified());
    });
    ASSERT_TRUE(error) << "before request returned";
    const auto task = manager->createTask(SimpleHttpRequest::make({}), [](const SimpleHttpResponse&) { FAIL(); });
    for (const AnyError& each : {*error, task.error()})
        EXPECT_EQ(*each.as<PlatformError>(), PlatformError("Invalid URL", 999));
}

TEST_F(SimpleHttpManagerTest, MakesTasksThatWaitAndForgetsPlainRequests) {
    const auto task = manager->createTask(SimpleHttpRequest::make({.url = url}), responses.callback());
    EXPECT_EQ(task.value()->state(), URLSessionTaskState::suspended);
    (*task)->cancel();
    EXPECT_EQ(responses.wait().first.error()->code(), -999);
    EXPECT_EQ(server.requestCount(), 0U);

    SimpleHttpManager::make()->request(URLRequest(*url));
    EXPECT_TRUE(server.waitForRequests(1)) << "the request outlives the manager";
}

}  // namespace
}  // namespace corvane
