#include <expected>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

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
using testing::VirtualClock;

constexpr SourceFileContext site("/app/Scores/Loader.cpp", "load()", 42);

/// The message without its mention of `site`, which has to be there.
std::string withoutSite(std::string message) {
    constexpr std::string_view mention = " dispatched from: load(), in Loader.cpp, at line: 42";
    return message.erase(message.find(mention), mention.size());
}

/// Runs `body` on a thread of its own while this one, the main thread, serves the main queue.
void besideTheMainLoop(const std::function<void()>& body) {
    bool done = false;
    const std::jthread other([&] {
        body();
        DispatchQueue::main().async([&] { done = true; });
    });
    while (!done)
        RunLoop::main().runOnce();
}

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
        {[](auto f) { asyncOnMain(-1, f, site); }, 0, true, "asyncOnMain()"},
        {[](auto f) { asyncOnMain(0.5, f, site); }, 0.5, true, "asyncOnMain(afterDelay: 0.50s)"},
        {[](auto f) { asyncOnGlobal({QoSClass::utility}, f, site); }, 0, false, "asyncOnGlobal()"},
        {[](auto f) { asyncOnGlobal(0, {QoSClass::utility, -3}, f, site); }, 0, false,
         "asyncOnGlobal(afterDelay: 0.00s, qos:  utility, relative priority -3)"},
        {[](auto f) { asyncOnGlobal(-2.5, {QoSClass::background}, f, site); }, 0, false,
         "asyncOnGlobal(afterDelay: -2.50s, qos:  background, relative priority 0)"},
        {[](auto f) { asyncOnGlobal(12.345, {QoSClass::userInitiated}, f, site); }, 12.345, false,
         "asyncOnGlobal(afterDelay: 12.35s, qos:  userInitiated, relative priority 0)"},
        {[&](auto f) { async(*serial, 0, {}, f, site); }, 0, false, "DispatchQueue.async"},
        {[&](auto f) { async(*serial, 2, {}, f, site); }, 2, false, "DispatchQueue.async(afterDelay: 2.00s)"},
        {[](auto f) { async(DispatchQueue::main(), 2, {}, f, site); }, 2, true,
         "DispatchQueue.async(afterDelay: 2.00s)"},
    };

    VirtualClock clock;
    for (const auto& [hop, delay, onMainThread, line] : cases) {
        const LogRecorder log;
        std::vector<std::thread::id> ranOn;
        std::size_t linesBefore = 0;
        hop([&] {
            ranOn.push_back(std::this_thread::get_id());
            linesBefore = log.messages("Concurrency").size();
        });
        if (onMainThread) {
            EXPECT_THAT(ranOn, IsEmpty()) << line;
        }
        if (delay > 0) {
            clock.advance(delay / 2);
            EXPECT_THAT(ranOn, IsEmpty()) << line;
            EXPECT_THAT(log.messages(), IsEmpty()) << line;
            clock.advance(delay / 2);
        }
        clock.settle();
        ASSERT_EQ(ranOn.size(), 1U) << line;
        EXPECT_EQ(ranOn[0] == std::this_thread::get_id(), onMainThread) << line;
        EXPECT_EQ(linesBefore, 1U) << line;

        const auto entries = log.entries();
        ASSERT_EQ(entries.size(), 1U) << line;
        EXPECT_EQ(withoutSite(entries[0].message), line);
        EXPECT_EQ(entries[0].level, LogLevel::debug);
        EXPECT_EQ(entries[0].thread, ranOn[0]) << line;
    }
}

TEST(ConvenientDispatch, TakesTheCallersPlaceByDefault) {
    VirtualClock clock;
    const LogRecorder log;
    asyncOnMain([] {});
    const auto line = std::to_string(__LINE__ - 1);
    clock.settle();
    EXPECT_THAT(log.messages(), ElementsAre("asyncOnMain() dispatched from: TestBody(), in "
                                            "ConvenientDispatchTests.cpp, at line: " +
                                            line));
    EXPECT_EQ(std::to_string(log.entries().at(0).origin.line), line);
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
    std::thread::id caller, performedOn, ranOn, returnedOn;
    std::expected<int, std::string> failure;
    std::string thrown;
    besideTheMainLoop([&] {
        caller = std::this_thread::get_id();
        performOnMain([&] { performedOn = std::this_thread::get_id(); }, site);
        syncOnMain([&] { ranOn = std::this_thread::get_id(); }, site);
        returnedOn = syncOnMain([] { return std::this_thread::get_id(); }, site);
        failure = syncOnMain([]() -> std::expected<int, std::string> { return std::unexpected("no"); }, site);
        try {
            syncOnMain([]() -> int { throw std::runtime_error("failed"); }, site);
        } catch (const std::runtime_error& error) {
            thrown = error.what();
        }
    });
    EXPECT_EQ(performedOn, mainThread);
    EXPECT_EQ(ranOn, mainThread);
    EXPECT_EQ(returnedOn, mainThread);
    EXPECT_EQ(failure, std::unexpected("no"));
    EXPECT_EQ(thrown, "failed");

    std::vector<std::string> onCaller, onMain;
    for (const auto& entry : log.entries()) {
        (entry.thread == caller ? onCaller : onMain).push_back(withoutSite(entry.message));
    }
    constexpr auto waiting = "syncOnMain() -> T is waiting";
    constexpr auto running = "syncOnMain() -> T is running";
    EXPECT_THAT(onCaller, ElementsAre("syncOnMain() is waiting", waiting, waiting, waiting));
    EXPECT_THAT(onMain, ElementsAre("performOnMain()", "syncOnMain() is running", running, running, running));
}

}  // namespace corvane
