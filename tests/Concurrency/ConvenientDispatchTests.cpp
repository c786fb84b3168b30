#include <expected>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
        EXPECT_EQ(entries[0].message, std::string(line) + " dispatched from: load(), in Loader.cpp, at line: 42");
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
    EXPECT_EQ(std::to_string(log.entries().at(0).location.line()), line);
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

TEST(ConvenientDispatch, HopsToTheMainThreadFromAnother) {
    const auto mainThread = std::this_thread::get_id();
    const LogRecorder log;
    std::thread::id performedOn;
    besideTheMainLoop([&] { performOnMain([&] { performedOn = std::this_thread::get_id(); }, site); });
    EXPECT_EQ(performedOn, mainThread);
    EXPECT_THAT(log.messages(), ElementsAre("performOnMain() dispatched from: load(), in Loader.cpp, at line: 42"));
}

TEST(ConvenientDispatch, WaitsForTheMainThreadAndPassesOnWhatComesBack) {
    const auto mainThread = std::this_thread::get_id();
    const LogRecorder log;
    std::thread::id caller, ranOn, returnedOn;
    std::expected<int, std::string> failure;
    std::string thrown;
    besideTheMainLoop([&] {
        caller = std::this_thread::get_id();
        syncOnMain([&] { ranOn = std::this_thread::get_id(); }, site);
        returnedOn = syncOnMain([] { return std::this_thread::get_id(); }, site);
        failure = syncOnMain([]() -> std::expected<int, std::string> { return std::unexpected("no"); }, site);
        try {
            syncOnMain([]() -> int { throw std::runtime_error("failed"); }, site);
        } catch (const std::runtime_error& error) {
            thrown = error.what();
        }
    });
    EXPECT_EQ(ranOn, mainThread);
    EXPECT_EQ(returnedOn, mainThread);
    EXPECT_EQ(failure, std::unexpected("no"));
    EXPECT_EQ(thrown, "failed");

    const auto entries = log.entries();
    ASSERT_EQ(entries.size(), 8U);
    for (std::size_t index = 0; index < entries.size(); index += 2) {
        const std::string line = std::string(index == 0 ? "syncOnMain()" : "syncOnMain() -> T") +
                                 " dispatched from: load(), in Loader.cpp, at line: 42 is ";
        EXPECT_EQ(entries[index].message, line + "waiting");
        EXPECT_EQ(entries[index].thread, caller);
        EXPECT_EQ(entries[index + 1].message, line + "running");
        EXPECT_EQ(entries[index + 1].thread, mainThread);
    }
}

TEST(ConvenientDispatch, IsSilentWhileItsLevelIsOff) {
    VirtualClock clock;
    const LogRecorder log(LogLevel::info);
    bool ran = false;
    asyncOnMain(1, [&] { ran = true; });
    clock.advance(1);
    EXPECT_TRUE(ran);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST(ConvenientDispatch, MovesItsCallbackAndDestroysItWhereItRan) {
    VirtualClock clock;

    struct Witness {
        std::thread::id* endedOn;

        explicit Witness(std::thread::id* where) : endedOn(where) {}

        Witness(Witness&& other) noexcept : endedOn(std::exchange(other.endedOn, nullptr)) {}

        Witness(const Witness&) = delete;
        Witness& operator=(const Witness&) = delete;

        ~Witness() {
            if (endedOn != nullptr) *endedOn = std::this_thread::get_id();
        }
    };

    std::thread::id ranOn, endedOn;
    asyncOnGlobal({QoSClass::default_}, [&ranOn, witness = Witness(&endedOn)] { ranOn = std::this_thread::get_id(); });
    clock.settle();
    EXPECT_NE(ranOn, std::thread::id());
    EXPECT_EQ(endedOn, ranOn);
}

}  // namespace corvane
