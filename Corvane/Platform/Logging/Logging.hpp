#pragma once

#include <memory>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogLevel.hpp>
#include <Corvane/Platform/Logging/LogSink.hpp>

namespace corvane {

/// The process's choice of what is logged and where to. Entries of level info and above go to standard error
/// until the application chooses otherwise. All operations may be called on any thread.
class CORVANE_EXPORT Logging {
  public:
    Logging() = delete;

    /// Sets the least level that is written, for channels that have no level of their own.
    static void setLevel(LogLevel level) noexcept;

    /// Sets the least level of one subsystem and category, which `setLevel` then leaves alone.
    static void setLevel(LogLevel level, std::string_view subsystem, std::string_view category);

    /// Puts `sink` in force for all loggers, or the standard-error sink when it is null; gives the one before.
    /// The former sink may still be written to by entries that were under way, and is held until they are done.
    static std::shared_ptr<LogSink> setSink(std::shared_ptr<LogSink> sink);
};

}  // namespace corvane
