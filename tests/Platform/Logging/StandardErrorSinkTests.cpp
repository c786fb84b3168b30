#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Logging/StandardErrorSink.hpp>

namespace corvane {

namespace {

std::string written(const LogEntry& entry) {
    const int file = ::memfd_create("log", MFD_CLOEXEC);
    StandardErrorSink(file).write(entry);
    std::string text(4096, '\0');
    text.resize(static_cast<std::size_t>(::pread(file, text.data(), text.size(), 0)));
    ::close(file);
    return text;
}

}  // namespace

TEST(StandardErrorSink, WritesLinesForAPerson) {
    using namespace std::chrono;
    const Date evening = sys_days(2024y / March / 15) + 19h + 30min + 123ms;

    const struct {
        LogEntry entry;
        std::string_view line;
    } cases[] = {
        {{LogLevel::info, "Corvane", "Command", "done", evening, {}},
         "2024-03-15 19:30:00.123Z info  [Corvane: Command] done\n"},
        {{LogLevel::error, "a", "b", "one\ntwo\n\tthree", evening, {}},
         "2024-03-15 19:30:00.123Z error [a: b] one\n    two\n    \tthree\n"},
        {{LogLevel::debug, "a", "b", "\x1b[2J\r\x7f \xc3\xa9", evening, {}},
         "2024-03-15 19:30:00.123Z debug [a: b] \\x1b[2J\\x0d\\x7f \xc3\xa9\n"},
        {{LogLevel::info, "a", "b", "", Date(seconds(-1)), {}}, "1969-12-31 23:59:59.000Z info  [a: b] \n"},
        {{LogLevel::info, "a", "b", "", Date(duration<double>(1e300)), {}}, "1e+300 info  [a: b] \n"},
    };

    for (const auto& [entry, line] : cases)
        EXPECT_EQ(written(entry), line);
}

TEST(StandardErrorSink, SurvivesABrokenPipe) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ::close(ends[0]);
    StandardErrorSink sink(ends[1]);
    for (int entry = 0; entry < 2; ++entry)
        sink.write({LogLevel::info, "a", "b", "lost", {}, {}});
    ::close(ends[1]);
}

}  // namespace corvane
