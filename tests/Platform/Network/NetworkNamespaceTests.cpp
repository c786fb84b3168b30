#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <latch>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Network/Private/KernelPath.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "PathRecorder.hpp"
#include "tests/Platform/HTTP/ResolverStub.hpp"
#include "tests/Support/DescriptorShortage.hpp"
#include "tests/Support/NetworkNamespace.hpp"

namespace corvane {
namespace {

const SocketAddress internet = SocketAddress::zero();

/// A cable between ve0 and ve1, plugged in on both sides, and an address on this side.
void plugCable() {
    NetworkNamespace::ip("link set lo up");
    NetworkNamespace::ip("link add ve0 type veth peer name ve1");
    NetworkNamespace::ip("addr add 10.0.0.1/24 dev ve0");
    NetworkNamespace::ip("link set ve0 up");
    NetworkNamespace::ip("link set ve1 up");
}

TEST(NetworkNamespaceTest, FollowsLinksRoutesAndAddresses) {
    if (!NetworkNamespace::enter()) return;
    const auto path = NetworkPath::make(internet).value();
    const auto recorder = PathRecorder::watch(*path);
    ASSERT_TRUE(recorder);
    EXPECT_EQ(path->flags(), NetworkFlags());
    plugCable();
    recorder->waitFor("-- -------");

    const struct {
        const char* command;
        const char* flags;
    } steps[] = {
        {"route add default via 10.0.0.2", "-R -------"},
        {"link set ve1 down", "-- -------"},
        {"link set ve1 up", "-R -------"},
        {"route del default", "-- -------"},
        {"route add default dev ve0", "-R ------d"},
        {"addr del 10.0.0.1/24 dev ve0", "-- -------"},
        // IPv6 alone.
        {"-6 addr add 2001:db8::1/64 dev ve0 nodad", nullptr},
        {"-6 route add default via 2001:db8::2", "-R -------"},
        {"-6 addr add 2001:db8::7/64 dev ve0 nodad", nullptr},
        {"-6 addr del 2001:db8::1/64 dev ve0", nullptr},
        {"-6 addr del 2001:db8::7/64 dev ve0", "-- -------"},
        // Both, and one less.
        {"addr add 10.0.1.1/24 dev ve0", nullptr},
        {"route add default via 10.0.1.2", "-R -------"},
        {"-6 route del default", nullptr},
        {"link set ve0 down", "-- -------"},
    };

    std::vector<std::string> expected = {"-- -------"};
    for (const auto& [command, flags] : steps) {
        NetworkNamespace::ip(command);
        if (flags == nullptr) continue;
        expected.emplace_back(flags);
        recorder->waitFor(flags);
    }
    EXPECT_EQ(recorder->reports(), expected) << "each change once, and nothing for the same flags";
}

/// Past ThreadSanitizer, to which closing what another thread reads from is a race: it is what is to be survived.
void closeNetlinkSockets() {
    constexpr int enough = 64;
    for (int descriptor = 3; descriptor < enough; ++descriptor) {
        int domain = 0;
        socklen_t bytes = sizeof domain;
        if (::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &domain, &bytes) == 0 && domain == AF_NETLINK)
            ::syscall(SYS_close, descriptor);
    }
}

TEST(NetworkNamespaceTest, OutlivesTheLossOfItsDescriptors) {
    if (!NetworkNamespace::enter()) return;
    plugCable();
    NetworkNamespace::ip("route add default dev ve0");
    const auto path = NetworkPath::make(internet).value();
    const auto loopback = NetworkPath::make(*SocketAddress::parse("127.0.0.1")).value();
    for (const bool isKnown : {false, true}) {
        if (!DescriptorShortage::isPossible) break;
        ASSERT_TRUE(!isKnown || loopback->flags());
        const DescriptorShortage shortage;
        ASSERT_FALSE(path->flags()) << "its link may be a modem";
        EXPECT_EQ(path->flags().error().code, EMFILE);
        EXPECT_EQ(loopback->flags().has_value(), isKnown) << "a link that was looked at is not forgotten";
    }
    const auto recorder = PathRecorder::watch(*path);
    ASSERT_TRUE(recorder);
    recorder->waitFor("-R ------d");
    for (int round = 0; round < 2; ++round) {
        closeNetlinkSockets();
        NetworkNamespace::ip("link set ve1 down");
        recorder->waitFor("-- -------");
        NetworkNamespace::ip("link set ve1 up");
        recorder->waitFor("-R ------d");
    }
}

/// Blocks until the look-ups of "recovering.test" that were asked for before have been answered.
void waitForLookUps() {
    struct Client final : network::HostLookupClient {
        void hostLookedUp(network::HostAnswer /*answer*/) override { answered.count_down(); }

        std::latch answered{1};
    };

    const auto client = std::make_shared<Client>();
    network::HostLookups::shared().lookUp("recovering.test", client);
    client->answered.wait();
}

TEST(NetworkNamespaceTest, LooksAHostUpAgain) {
    if (!NetworkNamespace::enter()) return;
    plugCable();
    {
        ResolverStub resolver;
        const auto path = NetworkPath::make("recovering.test").value();
        const auto recorder = PathRecorder::watch(*path);
        ASSERT_TRUE(recorder);
        recorder->waitFor("-- -------");
        resolver.recover();
        NetworkNamespace::ip("route add default via 10.0.0.2");
        recorder->waitFor("-R -----ld");
    }
    // There is a way to a server now, so a look-up that failed for now is tried again without any change.
    testing::VirtualClock clock;
    for (const bool isWatchedAgain : {false, true}) {
        ResolverStub resolver;
        const auto path = std::static_pointer_cast<network::KernelPath>(NetworkPath::make("recovering.test").value());
        const auto recorder = PathRecorder::watch(*path);
        ASSERT_TRUE(recorder);
        recorder->waitFor("-- -------");
        for (const double delay : {1, 2, 4}) {
            clock.advance(delay);
            waitForLookUps();
        }
        if (isWatchedAgain) {
            ASSERT_TRUE(path->setCallback(nullptr) && PathRecorder::watch(*path));
        } else {
            path->networkChanged();
        }
        waitForLookUps();
        resolver.recover();
        clock.advance(1);
        waitForLookUps();
        EXPECT_EQ(path->flags()->description(), "-R -----ld") << "the delays begin anew";
    }
}

/// Flaps of a route, in one process and as fast as it goes.
std::string flaps(int count) {
    std::string commands;
    for (int i = 0; i < count; ++i)
        commands += "route add default via 10.0.0.2\nroute del default\n";
    return commands;
}

TEST(NetworkNamespaceTest, MissesNoFinalState) {
    if (!NetworkNamespace::enter()) return;
    plugCable();
    // With a buffer for hardly two announcements, and so many to tell of each, it misses most.
    auto& deaf = *new network::PathMonitor(1);
    std::vector<std::shared_ptr<NetworkPath>> others;
    for (int i = 0; i < 1000; ++i) {
        others.push_back(network::KernelPath::make(internet, deaf).value());
        ASSERT_TRUE(PathRecorder::watch(*others.back()));
    }
    for (network::PathMonitor* const monitor : {&network::PathMonitor::shared(), &deaf}) {
        const auto path = network::KernelPath::make(internet, *monitor).value();
        const auto recorder = PathRecorder::watch(*path);
        ASSERT_TRUE(recorder);
        NetworkNamespace::ipBatch(flaps(1000) + "route add default dev ve0\n");
        recorder->waitFor("-R ------d");
        NetworkNamespace::ipBatch("route del default\n" + flaps(1000));
        recorder->waitFor("-- -------");
        NetworkNamespace::ipBatch("route add default dev ve0\n");
        recorder->waitFor("-R ------d");

        auto reports = recorder->reports();
        EXPECT_EQ(std::ranges::adjacent_find(reports), reports.end()) << "the same flags twice";
        NetworkNamespace::ip("route del default");
        recorder->waitFor("-- -------");
    }
}

}  // namespace
}  // namespace corvane
