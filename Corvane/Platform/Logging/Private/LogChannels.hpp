#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <Corvane/Platform/Logging/LogSink.hpp>
#include <Corvane/Platform/Logging/Logger.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

/// All channels of the process, one per subsystem and category, and their levels. Any thread.
class LogChannels {
  public:
    /// The one instance; never destroyed, because loggers point into it for as long as any thread runs.
    static LogChannels& shared();

    Logger::Channel& channel(std::string_view subsystem, std::string_view category);

    LogLevel setLevel(LogLevel level) noexcept;
    std::optional<LogLevel> setOwnLevel(std::optional<LogLevel> level, std::string_view subsystem,
                                        std::string_view category);

  private:
    using Name = std::pair<std::string, std::string>;

    struct ByName {
        using is_transparent = void;

        bool operator()(const auto& a, const auto& b) const noexcept {
            const int order = std::string_view(a.first).compare(b.first);
            return order != 0 ? order < 0 : std::string_view(a.second) < std::string_view(b.second);
        }
    };

    struct Entry {
        Logger::Channel channel{};
        std::optional<LogLevel> ownLevel;
    };

    Entry& entry(std::string_view subsystem, std::string_view category);

    std::mutex mutex_;
    std::map<Name, Entry, ByName> entries_;  // a map: its entries keep their addresses
    LogLevel level_ = LogLevel::info;
};

/// The sink in force. Any thread.
class SinkInForce {
  public:
    static SinkInForce& shared();

    std::shared_ptr<LogSink> get() noexcept {
        const std::lock_guard guard(lock_);
        return sink_;
    }

    std::shared_ptr<LogSink> exchange(std::shared_ptr<LogSink> sink);

  private:
    SinkInForce();

    UnfairLock lock_;
    std::shared_ptr<LogSink> sink_;
    const std::shared_ptr<LogSink> standardError_;
};

}  // namespace corvane
