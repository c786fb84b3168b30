#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Network/NetworkPath.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "PathRecorder.hpp"
#include "tests/Platform/HTTP/ResolverStub.hpp"

namespace corvane {
namespace {

TEST(NetworkPath, RefusesNamesThatAreNone) {
    for (const std::string& name : {std::string(), std::string(254, 'a'), std::string("a\0b", 3)})
        EXPECT_EQ(NetworkPath::make(name).error().code, EINVAL);
    EXPECT_EQ(NetworkPathError{EINVAL}.description(), "Invalid argument");
}

TEST(NetworkPath, KnowsThisMachineByAddressAndByName) {
    EXPECT_EQ(NetworkPath::make(*SocketAddress::parse("127.0.0.1")).value()->flags()->description(), "-R -----ld");
    EXPECT_EQ(NetworkPath::make("127.0.0.1").value()->flags()->description(), "-R -----ld") << "needs no look-up";

    const auto path = NetworkPath::make("localhost").value();
    const auto recorder = PathRecorder::watch(*path);
    ASSERT_TRUE(recorder);
    recorder->waitFor("-R -----ld");
    EXPECT_EQ(path->flags()->description(), "-R -----ld");
    EXPECT_EQ(path->description(), "localhost (recorder)");
}

TEST(NetworkPath, TakesAnUnknownHostForOneWithoutFlags) {
    const auto path = NetworkPath::make("missing.test").value();
    const auto recorder = PathRecorder::watch(*path);
    ASSERT_TRUE(recorder);
    recorder->waitFor("-- -------");
    EXPECT_TRUE(path->setCallback(nullptr));
    EXPECT_EQ(path->description(), "missing.test (no callback)");
}

TEST(NetworkPath, WaitsForNoResolver) {
    const testing::VirtualClock clock;
    const ResolverStub resolver;
    std::vector<std::shared_ptr<NetworkPath>> paths;
    for (int i = 0; i < 100; ++i) {
        paths.push_back(NetworkPath::make("hanging.test").value());
        ASSERT_TRUE(PathRecorder::watch(*paths.back()));
        EXPECT_EQ(paths.back()->flags(), NetworkFlags());
    }
    resolver.waitForHangingLookups(1);
    const auto other = NetworkPath::make("localhost").value();
    const auto recorder = PathRecorder::watch(*other);
    recorder->waitFor("-R -----ld");
    paths.clear();
    EXPECT_EQ(other->flags()->description(), "-R -----ld");
}

}  // namespace
}  // namespace corvane
