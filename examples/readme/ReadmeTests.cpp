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

TEST(Readme, ShowsAProgramThatPrintsAModelOrWhyNot) {
    LoopbackServer server;
    server.route("GET", "/table", LoopbackResponse::json(R"({"season": 2026, "leader": {"name": "Rovers"}})"));
    server.route("GET", "/empty", LoopbackResponse::json("{}"));

    EXPECT_EQ(outputFor(server.url("/table")), "Rovers\n");
    EXPECT_THAT(outputFor(server.url("/empty")), StartsWith("Decoding Error: ("));
    EXPECT_EQ(outputFor("no URL"), "Invalid URL\n");

    server.refuseConnections();
    EXPECT_THAT(outputFor(server.url("/table")), StartsWith("URL Session Error: "));
}

}  // namespace
