#pragma once

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogSink.hpp>

namespace corvane {

/// Writes entries as lines for a person at a terminal, the time in UTC:
///
///     2024-03-15 19:30:00.123Z error [Corvane: Command] first line of the message
///         further lines of it
///
/// Each entry is one `write`, so that lines of several threads and processes do not mix. Control characters
/// other than newline and tab, which a message may have from the network, are written as \xNN. What cannot be
/// written is lost; a broken pipe raises no signal.
class CORVANE_EXPORT StandardErrorSink final : public LogSink {
  public:
    /// Writes to `descriptor`, which must stay open as long as the sink lives, or to standard error.
    explicit StandardErrorSink(int descriptor = 2) noexcept : descriptor_(descriptor) {}

    void write(const LogEntry& entry) noexcept override;

  private:
    int descriptor_;
};

}  // namespace corvane
