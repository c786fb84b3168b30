#include <atomic>
#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Logging/Logger.hpp>
#include <Corvane/Platform/Logging/Logging.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

namespace corvane {

TEST(Logger, ReachesTheSinkFromItsLevelUpwards) {
    const struct {
        LogLevel level;
        std::vector<std::string> messages;
    } cases[] = {
        {LogLevel::debug, {"d", "i", "e"}},
        {LogLevel::info, {"i", "e"}},
        {LogLevel::error, {"e"}},
        {LogLevel::off, {}},
    };

    const Logger logger("tests", "levels");
    for (const auto& [level, messages] : cases) {
        testing::LogRecorder log(level);
        logger.debug("d");
        logger.info("i");
        logger.error("e");
        logger.log(LogLevel::off, [] { return ADD_FAILURE() << "evaluated", ""; });
        EXPECT_EQ(log.messages("levels"), messages) << description(level);
    }
}

TEST(Logger, SharesItsChannelWithAllOfItsName) {
    testing::LogRecorder log(LogLevel::error);
    const Logger early("tests", "shared");
    Logging::setLevel(LogLevel::debug, "tests", "shared");
    const Logger late("tests", "shared");
    const Logger other("tests", "other");
    EXPECT_TRUE(early.isEnabled(LogLevel::debug) && late.isEnabled(LogLevel::debug));
    EXPECT_FALSE(other.isEnabled(LogLevel::debug));

    Logging::setLevel(LogLevel::off);
    EXPECT_TRUE(early.isEnabled(LogLevel::debug));
    EXPECT_FALSE(other.isEnabled(LogLevel::error));

    EXPECT_EQ(Logging::setLevel(std::nullopt, "tests", "shared"), LogLevel::debug);
    EXPECT_FALSE(early.isEnabled(LogLevel::error));
}

TEST(Logger, FormatsLinesOfAnyLength) {
    testing::LogRecorder log;
    const std::string text(10 * usualLogLine, 'x');
    logFormatted(Logger("tests", "long"), LogLevel::info, std::source_location::current(), FMT_COMPILE("{}: {:.2f}s"),
                 text, 0.5);
    EXPECT_EQ(log.messages().at(0), text + ": 0.50s");
}

TEST(Logging, GivesBackTheFormerSinkAndLetsItGo) {
    struct Sink : LogSink {
        void write(const LogEntry&) noexcept override { ++entries; }

        int entries = 0;
    };

    const auto former = Logging::setSink(nullptr);
    auto sink = std::make_shared<Sink>();
    const auto standardError = Logging::setSink(sink);
    Logger("tests", "sink").error("one");
    EXPECT_EQ(sink->entries, 1);
    EXPECT_EQ(Logging::setSink(nullptr), sink);
    EXPECT_EQ(sink.use_count(), 1);
    EXPECT_EQ(Logging::setSink(former), standardError);
}

// What a sanitizer looks at: sinks and levels change while other threads log.
TEST(Logging, ChangesWhileOthersLog) {
    testing::LogRecorder log;
    std::atomic<bool> done = false;
    std::jthread writer([&] {
        while (!done)
            Logger("tests", "concurrent").debug("x");
    });
    for (int round = 0; round < 200; ++round) {
        const testing::LogRecorder inner;
        inner.waitForEntries(1);
        Logging::setLevel(LogLevel::debug, "tests", "concurrent" + std::to_string(round % 8));
    }
    done = true;
}

}  // namespace corvane
