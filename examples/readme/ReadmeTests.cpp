#include <cstdio>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Testing/LoopbackServer.hpp>

namespace {

using corvane::testing::LoopbackResponse;
using corvane::testing::LoopbackServer;
using testing::StartsWith;

/// What the README's program prints, standard error included, when it is given `url`.
std::string outputFor(const std::string& url) {
    std::FILE* const program = popen((README_PROGRAM " '" + url + "' 2>&1").c_str(), "r");
    if (program == nullptr) return "cannot be started";
    std::string output;
    for (int character = 0; (character = std::fgetc(program)) != EOF;)
        output += static_cast<char>(character);
    return pclose(program) == 0 ? output : output + "(failed)";
}

TEST(Readme, ShowsAProgramThatPrintsADocumentOrWhyNot) {
    LoopbackServer server;
    server.route("GET", "/fixtures", LoopbackResponse::json(R"([{"home": "Rovers"}])"));

    EXPECT_EQ(outputFor(server.url("/fixtures")), "[{\"home\": \"Rovers\"}]\n");

    server.refuseConnections();
    EXPECT_THAT(outputFor(server.url("/fixtures")), StartsWith("Could not connect to the server."));
    EXPECT_EQ(outputFor("no URL"), "The operation couldn’t be completed. (Invalid URL error 999.)\n");
}

}  // namespace
