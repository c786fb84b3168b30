#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogLevel.hpp>
#include <Corvane/Platform/Logging/LogSink.hpp>

namespace corvane {

/// The process's choice of what is logged and where to. Entries of level info and above go to standard error
/// until the application chooses otherwise. All operations may be called on any thread; each gives what was
/// in force before, so that it can be put back.
class CORVANE_EXPORT Logging {
  public:
    Logging() = delete;

    /// Sets the least level that is written, for channels that have no level of their own.
    static LogLevel setLevel(LogLevel level) noexcept;

    /// Gives one subsystem and category a least level of its own, which `setLevel` then leaves alone, or none
    /// when `level` is absent.
    static std::optional<LogLevel> setLevel(std::optional<LogLevel> level, std::string_view subsystem,
                                            std::string_view category);

    /// Puts `sink` in force for all loggers, or the standard-error sink when it is null. The former sink may
    /// still be written to by entries that were under way, and is held until they are done.
    static std::shared_ptr<LogSink> setSink(std::shared_ptr<LogSink> sink);
};

}  // namespace corvane
