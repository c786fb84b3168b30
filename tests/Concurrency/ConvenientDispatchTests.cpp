#include <expected>
#include <functional>
#include <stdexcept>

#include <gmock/gmock.h>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LogRecorder;

constexpr SourceFileContext site("/app/Scores/Loader.cpp", "load()", 42);
const std::string fromSite = " dispatched from: load(), in Loader.cpp, at line: 42";

}  // namespace

TEST(ConvenientDispatch, RunsLaterOnItsQueueAndLogsTheCallRightBefore) {
    const auto serial = DispatchQueue::serial("tests");

    const struct {
        std::function<void(std::function<void()>)> hop;
        double delay;  // 0: due at once
        bool onMainThread;
        std::string_view line;
    } cases[] = {
        {[](auto f) { asyncOnMain(f, site); }, 0, true, "asyncOnMain()"},
        {[](auto f) { asyncOnMain(0, f, site); }, 0, true, "asyncOnMain()"},
        {[](auto f) { asyncOnMain(0.5, f, site); }, 0.5, true, "asyncOnMain(afterDelay: 0.50s)"},
        {[](auto f) { asyncOnGlobal({QoSClass::utility}, f, site); }, 0, false, "asyncOnGlobal()"},
        {[](auto f) { asyncOnGlobal(0, {QoSClass::utility, -3}, f, site); }, 0, false,
         "asyncOnGlobal(afterDelay: 0.00s, qos:  utility, relative priority -3)"},
        {[](auto f) { asyncOnGlobal(-2.5, {QoSClass::background}, f, site); }, 0, false,
         "asyncOnGlobal(afterDelay: -2.50s, qos:  background, relative priority 0)"},
        {[](auto f) { asyncOnGlobal(12.345, {QoSClass::userInitiated}, f, site); }, 12.345, false,
         "asyncOnGlobal(afterDelay: 12.35s, qos:  userInitiated, relative priority 0)"},
        {[&](auto f) { async(*serial, 0, {}, f, site); }, 0, false, "DispatchQueue.async"},
        {[](auto f) { async(DispatchQueue::main(), 2, {}, f, site); }, 2, true,
         "DispatchQueue.async(afterDelay: 2.00s)"},
    };

    testing::VirtualClock clock;
    LogRecorder log;
    for (const auto& [hop, delay, onMainThread, line] : cases) {
        SCOPED_TRACE(line);
        log.clear();
        std::vector<std::thread::id> ranOn;
        hop([&] {
            ranOn.push_back(std::this_thread::get_id());
            EXPECT_EQ(log.messages("Concurrency").size(), 1U);
        });
        if (onMainThread) {
            EXPECT_THAT(ranOn, IsEmpty());
        }
        if (delay > 0) {
            clock.advance(delay / 2);
            EXPECT_THAT(ranOn, IsEmpty());
            EXPECT_THAT(log.messages(), IsEmpty());
            clock.advance(delay / 2);
        }
        clock.settle();
        ASSERT_EQ(ranOn.size(), 1U);
        EXPECT_EQ(ranOn[0] == std::this_thread::get_id(), onMainThread);
        ASSERT_EQ(log.entries().size(), 1U);
        const auto entry = log.entries().front();
        EXPECT_EQ(entry.message, std::string(line) + fromSite);
        EXPECT_EQ(entry.level, LogLevel::debug);
        EXPECT_EQ(entry.thread, ranOn[0]);
    }
    asyncOnMain([] {});
    clock.settle();
    const auto entry = log.entries().back();
    EXPECT_EQ(entry.message, "asyncOnMain() dispatched from: TestBody(), in ConvenientDispatchTests.cpp, at line: " +
                                 std::to_string(__LINE__ - 4));
    EXPECT_EQ(entry.origin.line, __LINE__ - 5);
}

TEST(ConvenientDispatch, RunsDirectlyAndSilentlyOnTheMainThread) {
    const LogRecorder log;
    int runs = 0;
    performOnMain([&] { ++runs; });
    syncOnMain([&] { ++runs; });
    EXPECT_EQ(syncOnMain([&] { return ++runs; }), 3);
    EXPECT_THROW(syncOnMain([]() -> int { throw std::runtime_error("failed"); }), std::runtime_error);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST(ConvenientDispatch, HopsToTheMainThreadAndPassesOnWhatComesBack) {
    const auto mainThread = std::this_thread::get_id();
    const LogRecorder log;
    bool isDone = false;
    const std::jthread other([&] {
        performOnMain([&] { EXPECT_EQ(std::this_thread::get_id(), mainThread); }, site);
        syncOnMain([&] { EXPECT_EQ(std::this_thread::get_id(), mainThread); }, site);
        const auto failure = syncOnMain([]() -> std::expected<int, int> { return std::unexpected(7); }, site);
        EXPECT_EQ(failure, std::unexpected(7));
        EXPECT_THROW(syncOnMain([]() -> int { throw std::runtime_error("failed"); }, site), std::runtime_error);
        DispatchQueue::main().async([&] { isDone = true; });
    });
    while (!isDone)
        RunLoop::main().runOnce();

    std::vector<std::string> onOther, onMain;
    for (const auto& entry : log.entries())
        (entry.thread == mainThread ? onMain : onOther).push_back(entry.message);
    const std::string waiting = "syncOnMain() -> T" + fromSite + " is waiting";
    const std::string running = "syncOnMain() -> T" + fromSite + " is running";
    EXPECT_THAT(onOther, ElementsAre("syncOnMain()" + fromSite + " is waiting", waiting, waiting));
    EXPECT_THAT(onMain,
                ElementsAre("performOnMain()" + fromSite, "syncOnMain()" + fromSite + " is running", running, running));
}

}  // namespace corvane
