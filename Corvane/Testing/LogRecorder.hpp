#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Logging/LogLevel.hpp>
#include <Corvane/Platform/Logging/LogSink.hpp>

namespace corvane::testing {

/// Keeps what is logged while it lives, in place of the sink in force, and lets a test read it.
///
///     LogRecorder log;
///     asyncOnMain([] {});
///     RunLoop::main().runOnce();
///     EXPECT_EQ(log.messages("Concurrency").size(), 1);
///
/// It puts sink and level back when it ends; recorders that overlap must end in the reverse order of their
/// making. Operations may be called on any thread.
class CORVANE_EXPORT LogRecorder {
  public:
    struct Entry {
        LogLevel level;
        std::string subsystem;
        std::string category;
        std::string message;
        Date time;
        LogOrigin origin;
        /// The thread that logged, and whether it was the process's first one.
        std::thread::id thread;
        bool isMainThread;
    };

    /// Records entries of `level` and above; channels that have a level of their own keep it.
    explicit LogRecorder(LogLevel level = LogLevel::debug);
    ~LogRecorder();
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    /// What was recorded so far, oldest first.
    [[nodiscard]] std::vector<Entry> entries() const;

    /// The messages alone, of all categories or of one.
    [[nodiscard]] std::vector<std::string> messages(std::optional<std::string_view> category = std::nullopt) const;

    void clear();

    /// Blocks until at least `count` entries have been recorded since the start or the last `clear`.
    void waitForEntries(std::size_t count) const;

  private:
    class Sink;

    std::shared_ptr<Sink> sink_;
    std::shared_ptr<LogSink> formerSink_;
    LogLevel formerLevel_;
};

}  // namespace corvane::testing
