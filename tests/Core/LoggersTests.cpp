#include <gmock/gmock.h>

#include <Corvane/Core/FatalErrorInDebug.hpp>
#include <Corvane/Core/LogCategory.hpp>
#include <Corvane/Core/Loggers.hpp>
#include <Corvane/Platform/Logging/Logging.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

namespace corvane {

TEST(Loggers, AreOnePerCategoryOfOneSubsystem) {
    const std::pair<Logger, std::string_view> cases[] = {
        {Loggers::command(), "Command"},
        {Loggers::concurrency(), "Concurrency"},
        {Loggers::decoding(), "Decoding"},
        {Loggers::fileManager(), "File Manager"},
        {Loggers::unspecified(), "Unspecified"},
        {Loggers::userInterface(), "User Interface / Corvane"},
        {Loggers::customDebugName("anything"), "Unspecified"},
    };

    for (const auto& [logger, category] : cases) {
        EXPECT_EQ(logger.subsystem(), "Corvane");
        EXPECT_EQ(logger.category(), category);
    }
    EXPECT_EQ(description(LogCategory::benchmark), "Benchmark");
    EXPECT_EQ(description(LogCategory::dataCache), "Data Cache");
}

TEST(FatalErrorInDebug, LogsTheMessageWithTheCallAndReturns) {
    {
        const testing::LogRecorder silent(LogLevel::off);
        fatalErrorInDebug("broken");
        EXPECT_THAT(silent.messages(), ::testing::IsEmpty());
    }
    const testing::LogRecorder log(LogLevel::error);
    fatalErrorInDebug("broken", {"/app/Loader.cpp", "load()", 42});
    fatalErrorInDebug(Loggers::command(), "also broken");
    fatalErrorInDebug(std::string_view(), {"Loader.cpp", "load()", 42});

    const auto entries = log.entries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[2].message, "\nat: load(), in Loader.cpp, at line: 42");
    EXPECT_STREQ(entries[2].origin.function, "load()") << "what the place was given as";
    EXPECT_EQ(entries[2].origin.line, 42U);
    EXPECT_EQ(entries[0].level, LogLevel::error);
    EXPECT_EQ(entries[0].category, "Unspecified");
    EXPECT_EQ(entries[0].message, "broken\nat: load(), in Loader.cpp, at line: 42");
    EXPECT_EQ(entries[1].category, "Command");
    EXPECT_EQ(entries[1].message,
              "also broken\nat: TestBody(), in LoggersTests.cpp, at line: " + std::to_string(entries[1].origin.line));
    EXPECT_STREQ(entries[1].origin.file, __FILE__);
}

}  // namespace corvane
