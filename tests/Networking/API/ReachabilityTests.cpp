#include <atomic>
#include <cerrno>
#include <filesystem>

#include <gmock/gmock.h>

#include <Corvane/Networking/API/Reachability.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/ScriptedPath.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "tests/Support/NetworkNamespace.hpp"

namespace corvane {
namespace {

using testing::LogRecorder;
using testing::ScriptedPath;
using testing::VirtualClock;
using Flag = NetworkFlag;
using Step = ScriptedPath::Step;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

class ReachabilityTest : public ::testing::Test {
  protected:
    /// Keeps what the callbacks are told.
    void listen(Reachability& to) {
        to.setWhenReachable([this](Reachability& now) { heard.emplace_back(now.currentReachabilityString()); });
        to.setWhenUnreachable([this](Reachability& now) { heard.push_back("lost: " + now.description()); });
    }

    VirtualClock clock;
    ScriptedPath network;
    std::shared_ptr<Reachability> reachability = Reachability::make().value();
    std::vector<std::string> heard;
};

TEST_F(ReachabilityTest, DerivesTheConnectionFromTheFlags) {
    using enum NetworkFlag;
    constexpr auto none = Connection::unavailable, wifi = Connection::wifi, cellular = Connection::cellular;

    const struct {
        NetworkFlags flags;
        Connection connection;
        const char* text;
    } cases[] = {
        {{}, none, "-- -------"},
        {isWWAN, none, "W- -------"},
        {reachable | isWWAN, cellular, "WR -------"},
        {reachable | isWWAN | connectionRequired | interventionRequired, cellular, "WR c-i----"},
        {reachable | isDirect | isLocalAddress, wifi, "-R -----ld"},
        {reachable | transientConnection, wifi, "-R -t-----"},
        {reachable | connectionRequired, none, "-R c------"},
        {reachable | connectionRequired | connectionOnDemand, wifi, "-R c---D--"},
        {reachable | connectionRequired | connectionOnTraffic, wifi, "-R c--C---"},
        {reachable | connectionRequired | connectionOnDemand | interventionRequired, none, "-R c-i-D--"},
    };

    for (const auto& [flags, connection, text] : cases) {
        SCOPED_TRACE(text);
        network.setFlags(flags);
        const auto fresh = Reachability::make().value();
        EXPECT_EQ(fresh->description(), "unavailable flags");
        EXPECT_EQ(fresh->connection(), connection);
        EXPECT_EQ(fresh->description(), text);
        EXPECT_EQ(fresh->isReachable(), connection != none);
        EXPECT_EQ(fresh->isReachableViaWWAN(), connection == cellular);
        EXPECT_EQ(fresh->isReachableViaWiFi(), connection == wifi);
        fresh->setAllowsCellularConnection(false);
        EXPECT_EQ(fresh->currentReachabilityStatus(), connection == cellular ? none : connection);
    }
}

TEST_F(ReachabilityTest, HasTextsForUsers) {
    EXPECT_EQ(description(Connection::none), "unavailable");
    EXPECT_EQ(description(Connection::unavailable), "No Connection");
    EXPECT_EQ(description(Connection::wifi), "WiFi");
    EXPECT_EQ(description(Connection::cellular), "Cellular");
    EXPECT_EQ(description(NetworkStatus::notReachable), "No Connection");
    EXPECT_EQ(description(NetworkStatus::reachableViaWiFi), "WiFi");
    EXPECT_EQ(description(NetworkStatus::reachableViaWWAN), "Cellular");
}

TEST_F(ReachabilityTest, TellsOfEachChangeOnce) {
    const auto center = std::make_shared<NotificationCenter>();
    reachability->setNotificationCenter(center);
    std::vector<std::shared_ptr<Reachability>> objects;
    const auto observation = center->addObserver(reachabilityChanged, [&](const Notification& notification) {
        objects.push_back(notification.objectAs<Reachability>());
    });
    listen(*reachability);

    ASSERT_TRUE(reachability->startNotifier());
    ASSERT_TRUE(reachability->startNotifier());
    EXPECT_TRUE(reachability->notifierRunning());
    EXPECT_EQ(network.installations(), 1);
    EXPECT_THAT(heard, IsEmpty()) << "callbacks come on the main queue";
    for (const NetworkFlags flags : {NetworkFlags(Flag::reachable), NetworkFlags(), NetworkFlags(),
                                     Flag::reachable | Flag::isWWAN, Flag::reachable | Flag::isWWAN}) {
        network.report(flags);
        clock.settle();
    }
    EXPECT_THAT(heard, ElementsAre("WiFi", "lost: -- -------", "Cellular"));
    EXPECT_THAT(objects, ElementsAre(reachability, reachability, reachability));
    objects.clear();
    reachability->stopNotifier();
    EXPECT_FALSE(reachability->notifierRunning());
    EXPECT_EQ(network.watchedPaths(), 0);
    network.report({});
    clock.settle();
    EXPECT_EQ(heard.size(), 3);
}

TEST_F(ReachabilityTest, FailsWithThePlatformsErrorNumberAndLeavesNothingInstalled) {
    network.refuse(Step::createWithAddress, EMFILE);
    EXPECT_EQ(Reachability::make().error(),
              ReachabilityError::failedToCreateWithAddress(SocketAddress::zero(), EMFILE));
    network.refuse(Step::createWithHostName, EPERM);
    EXPECT_EQ(Reachability::make("example.com").error(),
              ReachabilityError::failedToCreateWithHostname("example.com", EPERM));
    EXPECT_EQ(Reachability::make("").error().description(), "failedToCreateWithHostname(\"\", 22)");

    network.refuse(Step::readFlags, ENOMEM);
    EXPECT_EQ(reachability->connection(), Connection::unavailable) << "a question swallows the failure";
    EXPECT_FALSE(reachability->flags());
    network.allow(Step::readFlags);

    const std::pair<Step, ReachabilityError> cases[] = {
        {Step::setCallback, ReachabilityError::unableToSetCallback(7)},
        {Step::setDispatchQueue, ReachabilityError::unableToSetDispatchQueue(7)},
        {Step::readFlags, ReachabilityError::unableToGetFlags(7)},
    };

    listen(*reachability);
    for (const auto& [step, error] : cases) {
        SCOPED_TRACE(error.description());
        network.refuse(step, 7);
        EXPECT_EQ(reachability->startNotifier().error(), error);
        EXPECT_FALSE(reachability->notifierRunning());
        network.allow(step);
        network.report({});
        clock.settle();
        EXPECT_THAT(heard, IsEmpty());
        EXPECT_EQ(reachability->reachabilityRef()->description(), "0.0.0.0:0 (no callback)");
    }
    EXPECT_TRUE(reachability->startNotifier()) << "a failed start does not spoil the next";
}

TEST_F(ReachabilityTest, MayEndWhileAReportIsOnItsWay) {
    listen(*reachability);
    ASSERT_TRUE(reachability->startNotifier());
    clock.settle();
    heard.clear();
    const auto path = reachability->reachabilityRef();
    EXPECT_EQ(path->description(), "0.0.0.0:0 (-R -------)");

    // On its way on the reachability queue, then on the main queue.
    network.holdReports();
    network.report({});
    const std::weak_ptr<Reachability> weak = reachability;
    reachability = nullptr;
    EXPECT_TRUE(weak.expired()) << "what is on its way must not keep it alive";
    network.releaseReports();
    clock.settle();

    auto other = Reachability::make("example.com").value();
    listen(*other);
    ASSERT_TRUE(other->startNotifier());
    other->reachabilitySerialQueue()->sync([] {});
    other = nullptr;
    clock.settle();
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_EQ(network.watchedPaths(), 0);
    EXPECT_EQ(path->description(), "0.0.0.0:0 (no callback)");
}

TEST_F(ReachabilityTest, AnswersInItsCallbacksOnItsOwnQueueAndMayEndThere) {
    reachability = Reachability::make({.notificationQueue = nullptr}).value();
    std::atomic<bool> isOnQueue = false;
    reachability->setWhenReachable([&](Reachability& now) {
        isOnQueue = now.reachabilitySerialQueue()->isCurrent();
        heard.emplace_back(now.currentReachabilityString());
        now.stopNotifier();
        EXPECT_TRUE(now.startNotifier());
    });
    ASSERT_TRUE(reachability->startNotifier());
    EXPECT_TRUE(isOnQueue);
    EXPECT_THAT(heard, ElementsAre("WiFi")) << "before startNotifier returns";
    EXPECT_TRUE(reachability->notifierRunning());

    reachability->setWhenUnreachable([&](Reachability&) { reachability = nullptr; });
    network.report({});
    clock.settle();
    EXPECT_EQ(reachability, nullptr);
    EXPECT_EQ(network.watchedPaths(), 0);

    reachability = Reachability::make({.notificationQueue = nullptr}).value();
    reachability->setWhenUnreachable([&](Reachability&) { reachability = nullptr; });
    EXPECT_EQ(reachability->connection(), Connection::unavailable) << "told before it is answered";
    EXPECT_EQ(reachability, nullptr);
}

TEST_F(ReachabilityTest, ReportsAReadThatWouldWaitForItself) {
    const LogRecorder log;
    const auto answer = reachability->reachabilitySerialQueue()->sync([this] { return reachability->connection(); });
    EXPECT_EQ(answer, Connection::unavailable);
    ASSERT_EQ(log.entries().size(), 1);
    EXPECT_EQ(log.entries().front().level, LogLevel::error);
    EXPECT_THAT(log.messages().front(), ::testing::HasSubstr("ReachabilityTests.cpp"));

    EXPECT_EQ(reachability->connection(), Connection::wifi);
    EXPECT_EQ(reachability->reachabilitySerialQueue()->sync([this] { return reachability->connection(); }),
              Connection::wifi);
}

TEST_F(ReachabilityTest, IsSafeToUseFromSeveralThreads) {
    for (const auto& queue : {std::shared_ptr<DispatchQueue>(), DispatchQueue::global().shared_from_this()}) {
        std::atomic<int> calls = 0;
        for (int round = 0; round < 50; ++round) {
            auto shared = Reachability::make({.notificationQueue = queue}).value();
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&, i, mine = shared] {
                    mine->setWhenReachable([&](Reachability& now) { calls += now.isReachable() ? 1 : 2; });
                    mine->setWhenUnreachable([&](Reachability& now) { calls += now.flags() ? 1 : 2; });
                    EXPECT_TRUE(mine->startNotifier());
                    network.report(i % 2 == 0 ? NetworkFlags() : NetworkFlags(Flag::reachable));
                    mine->setAllowsCellularConnection(i % 2 == 0);
                    static_cast<void>(mine->connection());
                    if (i == 3) mine->stopNotifier();
                });
            }
            shared = nullptr;
        }
        clock.settle();
        EXPECT_GT(calls, 0);
        EXPECT_EQ(network.watchedPaths(), 0);
    }
}

TEST(KernelReachability, LeaksNoDescriptor) {
    std::ptrdiff_t before = 0;
    for (int i = 0; i < 10000; ++i) {
        const auto reachability = Reachability::make({.notificationQueue = nullptr}).value();
        ASSERT_TRUE(reachability->startNotifier());
        if (i % 2 == 0) reachability->stopNotifier();
        if (i == 0) before = openDescriptors();
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(KernelReachability, FollowsTheNetwork) {
    if (!NetworkNamespace::enter()) return;
    NetworkNamespace::ip("link set lo up");
    NetworkNamespace::ip("link add ve0 type veth peer name ve1");
    NetworkNamespace::ip("addr add 10.0.0.1/24 dev ve0");
    NetworkNamespace::ip("link set ve0 up");
    NetworkNamespace::ip("link set ve1 up");
    const auto reachability = Reachability::make().value();
    std::vector<std::string> heard;
    const auto note = [&](Reachability& now) {
        heard.emplace_back(now.currentReachabilityString());
        RunLoop::main().stop();
    };
    reachability->setWhenReachable(note);
    reachability->setWhenUnreachable(note);
    ASSERT_TRUE(reachability->startNotifier());
    RunLoop::main().run();
    for (const char* const change : {"route add default via 10.0.0.2", "link set ve1 down", "link set ve1 up"}) {
        NetworkNamespace::ip(change);
        RunLoop::main().run();
    }
    EXPECT_THAT(heard, ElementsAre("No Connection", "WiFi", "No Connection", "WiFi"));
}

}  // namespace
}  // namespace corvane
