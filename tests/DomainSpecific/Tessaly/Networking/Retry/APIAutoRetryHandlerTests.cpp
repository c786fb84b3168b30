#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/APIAutoRetryHandler.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

using Result = TYAutoRetryResult;

TEST(APIAutoRetryHandler, AllowsItsRetriesOnceEachAfterItsTimeout) {
    testing::VirtualClock clock;
    const auto handler = APIAutoRetryHandler::make(2, 3);
    for (const Result expected : {Result::retry, Result::retry, Result::stop, Result::stop}) {
        const auto result = spawn(handler->start());
        clock.advance(2.5);
        EXPECT_EQ(result.isEnded(), expected == Result::stop);
        clock.advance(0.5);
        EXPECT_EQ(runBlocking(result.value()), expected);
        handler->clear();
    }
    EXPECT_EQ(runBlocking(APIAutoRetryHandler::make(0, 1e18)->start()), Result::stop) << "without waiting";
    EXPECT_EQ(runBlocking(APIAutoRetryHandler::make(1, -1e-10)->start()), Result::retry) << "rounded to no wait";
}

TEST(APIAutoRetryHandler, StopsWhenCancelledWithoutCounting) {
    testing::VirtualClock clock;
    auto handler = APIAutoRetryHandler::make(1, 1.8e10);
    const auto result = spawn(handler->start());
    clock.advance(60);
    EXPECT_FALSE(result.isEnded()) << "more nanoseconds than the clock can count";
    result.cancel();
    EXPECT_EQ(runBlocking(result.value()), Result::stop);
    EXPECT_EQ(handler->currentCount(), 0);
}

TEST(APIAutoRetryHandler, AllowsNoMoreWhenManyWaitAtOnceAndNobodyHoldsIt) {
    testing::VirtualClock clock;
    auto handler = APIAutoRetryHandler::make(3, 1);
    std::vector<TaskHandle<Result>> results;
    for (int i = 0; i < 20; ++i)
        results.push_back(spawn(handler->start()));
    handler.reset();
    clock.advance(1);
    int retries = 0;
    for (const auto& result : results)
        retries += runBlocking(result.value()) == Result::retry ? 1 : 0;
    EXPECT_EQ(retries, 3);
}

}  // namespace corvane
