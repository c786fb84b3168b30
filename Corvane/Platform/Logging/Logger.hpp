#pragma once

#include <atomic>
#include <concepts>
#include <source_location>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogLevel.hpp>
#include <Corvane/Platform/Logging/LogOrigin.hpp>

namespace corvane {

/// Writes messages of one subsystem and category to the sink in force (`Logging`).
///
/// A cheap value: copies share one channel, and channels live as long as the process. A level that is off
/// costs one relaxed load and evaluates nothing when the message is given as a callable:
///
///     logger.debug([&] { return "fetched " + url; });
///
/// All operations may be called on any thread.
class CORVANE_EXPORT Logger {
  public:
    Logger(std::string_view subsystem, std::string_view category);

    [[nodiscard]] std::string_view subsystem() const noexcept;
    [[nodiscard]] std::string_view category() const noexcept;

    /// Whether entries of `level` reach the sink; `off` never does.
    [[nodiscard]] bool isEnabled(LogLevel level) const noexcept {
        return level >= channel_->level.load(std::memory_order_relaxed) && level != LogLevel::off;
    }

    void log(LogLevel level, std::string_view message,
             std::source_location where = std::source_location::current()) const noexcept {
        if (isEnabled(level)) write(level, message, where);
    }

    /// The same for a place that the caller was told of.
    void log(LogLevel level, std::string_view message, const LogOrigin& where) const noexcept {
        if (isEnabled(level)) write(level, message, where);
    }

    template <std::invocable MessageMaker>
    void log(LogLevel level, const MessageMaker& makeMessage,
             std::source_location where = std::source_location::current()) const {
        if (isEnabled(level)) write(level, makeMessage(), where);
    }

    template <class Message>
    void debug(const Message& message, std::source_location where = std::source_location::current()) const {
        log(LogLevel::debug, message, where);
    }

    template <class Message>
    void info(const Message& message, std::source_location where = std::source_location::current()) const {
        log(LogLevel::info, message, where);
    }

    template <class Message>
    void error(const Message& message, std::source_location where = std::source_location::current()) const {
        log(LogLevel::error, message, where);
    }

    /// What loggers of one subsystem and category share.
    struct Channel {
        std::atomic<LogLevel> level;
        std::string_view subsystem;
        std::string_view category;
    };

  private:
    void write(LogLevel level, std::string_view message, const LogOrigin& where) const noexcept;

    Channel* channel_;
};

}  // namespace corvane
