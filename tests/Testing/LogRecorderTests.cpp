#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Platform/Logging/Logger.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

namespace corvane::testing {

using ::testing::ElementsAre;

TEST(LogRecorder, RecordsEntriesOfAllThreadsUntilItEnds) {
    LogRecorder outer(LogLevel::debug);
    {
        LogRecorder inner(LogLevel::error);
        const std::jthread other([] { Logger("tests", "a").error("from elsewhere"); });
        inner.waitForEntries(1);
        EXPECT_FALSE(inner.entries()[0].isMainThread);
        Logger("tests", "b").error("from here");
        EXPECT_THAT(inner.messages("a"), ElementsAre("from elsewhere"));
        EXPECT_THAT(inner.messages(), ElementsAre("from elsewhere", "from here"));
        inner.clear();
        EXPECT_THAT(inner.messages(), ElementsAre());
    }
    Logger("tests", "a").debug("back");
    EXPECT_THAT(outer.messages(), ElementsAre("back"));
}

}  // namespace corvane::testing
