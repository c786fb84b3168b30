#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <ctime>
#include <iterator>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Platform/Logging/Private/LogFormat.hpp>
#include <Corvane/Platform/Logging/StandardErrorSink.hpp>

namespace corvane {

namespace {

using Line = fmt::basic_memory_buffer<char, usualLogLine>;

/// Keeps SIGPIPE away from the calling thread, and takes back the one that its own writing raised.
class BrokenPipeGuard {
  public:
    BrokenPipeGuard() noexcept {
        ::sigemptyset(&brokenPipe_);
        ::sigaddset(&brokenPipe_, SIGPIPE);
        ::sigset_t pending;
        ::sigpending(&pending);
        wasPending_ = ::sigismember(&pending, SIGPIPE) == 1;
        if (!wasPending_) ::pthread_sigmask(SIG_BLOCK, &brokenPipe_, &before_);
    }

    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

    ~BrokenPipeGuard() {
        if (wasPending_) return;
        if (raised_) {
            constexpr ::timespec atOnce{};
            while (::sigtimedwait(&brokenPipe_, nullptr, &atOnce) < 0 && errno == EINTR) {
            }
        }
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

    void raised() noexcept { raised_ = true; }

  private:
    ::sigset_t brokenPipe_{};
    ::sigset_t before_{};
    bool wasPending_ = false;
    bool raised_ = false;
};

void appendTime(Line& line, Date time) {
    const double sinceEpoch = time.time_since_epoch().count();
    // Beyond the years that a civil calendar of four digits can show, the number itself says more.
    if (!(std::abs(sinceEpoch) < 1e11)) {
        fmt::format_to(std::back_inserter(line), FMT_COMPILE("{}"), sinceEpoch);
        return;
    }
    const auto instant = std::chrono::floor<std::chrono::milliseconds>(time);
    const auto day = std::chrono::floor<std::chrono::days>(instant);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(instant - day);
    fmt::format_to(std::back_inserter(line), FMT_COMPILE("{:04}-{:02}-{:02} {:02}:{:02}:{:02}.{:03}Z"),
                   static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                   static_cast<unsigned>(date.day()), clock.hours().count(), clock.minutes().count(),
                   clock.seconds().count(), clock.subseconds().count());
}

bool isPlain(char byte) noexcept {
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x20 && value != 0x7f) || byte == '\t';
}

void appendText(Line& line, std::string_view text) {
    constexpr std::string_view indent = "\n    ";
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && isPlain(text[plain]))
            ++plain;
        line.append(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty()) break;
        if (text.front() == '\n') {
            line.append(indent);
        } else {
            fmt::format_to(std::back_inserter(line), FMT_COMPILE("\\x{:02x}"),
                           static_cast<unsigned char>(text.front()));
        }
        text.remove_prefix(1);
    }
}

}  // namespace

void StandardErrorSink::write(const LogEntry& entry) noexcept {
    const int errnoBefore = errno;
    Line line;
    appendTime(line, entry.time);
    fmt::format_to(std::back_inserter(line), FMT_COMPILE(" {:<5} ["), description(entry.level));
    appendText(line, entry.subsystem);
    line.append(std::string_view(": "));
    appendText(line, entry.category);
    line.append(std::string_view("] "));
    appendText(line, entry.message);
    line.push_back('\n');

    BrokenPipeGuard guard;
    std::string_view rest(line.data(), line.size());
    while (!rest.empty()) {
        const auto written = ::write(descriptor_, rest.data(), rest.size());
        if (written >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            if (errno == EPIPE) guard.raised();
            break;
        }
    }
    errno = errnoBefore;
}

}  // namespace corvane
