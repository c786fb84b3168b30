#include "FaultFixture.hpp"

namespace corvane {
namespace {

using testing::LoopbackServer;

using RedirectFault = FaultTest;

TEST_F(RedirectFault, EndsInOneCompletionWithItsCode) {
    server.route("GET", "/endless/*",
                 [](const LoopbackRequest& request) { return LoopbackResponse::redirect(request.target + 'x'); });

    const struct {
        const char* location;
        URLError code;
    } cases[] = {
        {"/loop", URLError::httpTooManyRedirects},
        {"/endless/", URLError::httpTooManyRedirects},
        {"ftp://127.0.0.1/x", URLError::unsupportedURL},
        {"file:///etc/hostname", URLError::unsupportedURL},
        {"http://", URLError::redirectToNonExistentLocation},
        {"http://a b/", URLError::redirectToNonExistentLocation},
        {"http://127.0.0.1:99999/", URLError::redirectToNonExistentLocation},
        {"http://127.0.0.1:1/", URLError::cannotConnectToHost},
    };

    for (const auto& [location, code] : cases) {
        server.route("GET", "/loop", LoopbackResponse::redirect(location));
        const Completion completion = loadOne(request("/loop"));
        EXPECT_TRUE(completion.error == code) << location << ": " << completion.code();
        EXPECT_FALSE(completion.data);
    }
}

TEST_F(RedirectFault, TwentyAreFollowedAndNoMore) {
    server.route("GET", "/*", [](const LoopbackRequest& request) {
        const int left = std::stoi(request.target.substr(1));
        return left == 0 ? LoopbackResponse::json("there") : LoopbackResponse::redirect('/' + std::to_string(left - 1));
    });
    EXPECT_EQ(loadOne(request("/20")).body(), "there");
    EXPECT_TRUE(loadOne(request("/21")).error == URLError::httpTooManyRedirects);
    EXPECT_EQ(server.connectionsAccepted(), 1U);
}

TEST_F(RedirectFault, CredentialsStayWithTheirHost) {
    LoopbackServer other;
    other.route("GET", "/there", LoopbackResponse::json("there").with("Set-Cookie", "other=1"));
    server.route("GET", "/there", LoopbackResponse::json("there"));
    server.route("GET", "/home", LoopbackResponse::redirect("/there"));
    server.route("GET", "/away", LoopbackResponse::redirect(other.url("/there")));
    server.route("GET", "/alias", LoopbackResponse::redirect(server.url("/there", "localhost")));
    server.route("GET", "/set", LoopbackResponse::json("").with("Set-Cookie", "session=secret"));

    server.route("GET", "/chain", LoopbackResponse::redirect(other.url("/chain")));
    other.route("GET", "/chain", LoopbackResponse::redirect("/there"));

    auto configuration = URLSessionConfiguration::defaultConfiguration();
    configuration.httpAdditionalHeaders = {{"Session-Token", "secret"}, {"X-App", "kept"}};
    configuration.originBoundFields.emplace_back("session-token");
    useConfiguration(configuration);
    loadOne(request("/set"));
    for (const char* const target : {"/home", "/chain", "/away", "/alias"}) {
        URLRequest asked = request(target);
        asked.setValue("Bearer secret", "Authorization");
        asked.setValue("kept", "X-Other");
        EXPECT_EQ(loadOne(asked).body(), "there") << target;
    }
    std::vector<LoopbackRequest> strangers = other.requests();
    const LoopbackRequest alias = server.requests().back();
    strangers.push_back(alias);
    for (const LoopbackRequest& stranger : strangers) {
        for (const char* const secret : {"Authorization", "Session-Token"})
            EXPECT_EQ(stranger.header(secret), std::nullopt) << stranger.target << ' ' << secret;
        for (const char* const field : {"X-App", "X-Other"})
            EXPECT_EQ(stranger.header(field), "kept") << stranger.target;
    }
    EXPECT_EQ(alias.header("Cookie"), std::nullopt);
    EXPECT_EQ(alias.header("Host"), "localhost:" + std::to_string(server.port()));
    for (const LoopbackRequest& request : server.requests()) {
        if (request.target == "/there" && request.header("Host")->starts_with("127.")) {
            EXPECT_EQ(request.header("Authorization"), "Bearer secret");
            EXPECT_EQ(request.header("Cookie"), "session=secret");
            EXPECT_EQ(request.header("Session-Token"), "secret");
        }
    }
}

TEST_F(RedirectFault, ItsBodyIsNotTheResponse) {
    server.route("GET", "/there", LoopbackResponse::json("there"));
    for (const LoopbackFault fault : {LoopbackFault::none, LoopbackFault::truncatedBody, LoopbackFault::brokenGzip}) {
        LoopbackResponse redirect = LoopbackResponse::redirect("/there").with(fault);
        redirect.body = std::string(1'000'000, 'r');
        server.route("GET", "/from", redirect);
        EXPECT_EQ(loadOne(request("/from")).body(), "there") << static_cast<int>(fault);
    }
}

}  // namespace
}  // namespace corvane
