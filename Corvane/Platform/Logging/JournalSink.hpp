#pragma once

#include <expected>
#include <memory>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/LogSink.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// Writes entries to the system's journal, in its native datagram protocol, with the fields MESSAGE, PRIORITY
/// (7 debug, 6 info, 3 error), SUBSYSTEM, CATEGORY, SYSLOG_IDENTIFIER and, where the origin is known,
/// CODE_FILE, CODE_FUNC and CODE_LINE. The journal stamps the time of arrival.
///
///     if (auto journal = JournalSink::open()) Logging::setSink(*journal);
///
/// Entries of any size and content arrive whole. `write` waits while the journal's queue is full; an entry
/// that the journal does not take (it is being restarted, or is gone) is lost, and later ones reach it again.
class CORVANE_EXPORT JournalSink final : public LogSink {
  public:
    /// Makes a sink when a journal listens at `socketPath`; an error in the domain "POSIXErrorDomain"
    /// otherwise.
    [[nodiscard]] static std::expected<std::shared_ptr<JournalSink>, PlatformError> open(
        std::string socketPath = "/run/systemd/journal/socket");

    ~JournalSink() override;
    JournalSink(const JournalSink&) = delete;
    JournalSink& operator=(const JournalSink&) = delete;

    void write(const LogEntry& entry) noexcept override;

  private:
    JournalSink(int descriptor, std::string socketPath) noexcept;

    int descriptor_;
    std::string socketPath_;
};

}  // namespace corvane
