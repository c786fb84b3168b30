#pragma once

#include <memory>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogEntry.hpp>

namespace corvane {

/// Where log entries go. Written to from any thread, several at a time; an implementation guards itself, does
/// not throw and does not log.
class CORVANE_EXPORT LogSink {
  public:
    virtual ~LogSink() = default;

    virtual void write(const LogEntry& entry) noexcept = 0;
};

}  // namespace corvane
