#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

#include <Corvane/Platform/Dispatch/Private/RunLoopDescriptor.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

RunLoopDescriptor::RunLoopDescriptor()
    : epoll_(::epoll_create1(EPOLL_CLOEXEC)),
      event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
    epoll_event interest{};
    interest.events = EPOLLIN;
    for (const int source : {event_, timer_}) {
        if (epoll_ < 0 || source < 0 || ::epoll_ctl(epoll_, EPOLL_CTL_ADD, source, &interest) != 0) {
            fatalError("A run loop cannot make its descriptor: too many open files");
        }
    }
}

RunLoopDescriptor::~RunLoopDescriptor() {
    ::close(epoll_);
    ::close(event_);
    ::close(timer_);
}

void RunLoopDescriptor::signal() const noexcept {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(event_, &one, sizeof one);
}

void RunLoopDescriptor::acknowledge() const noexcept {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = ::read(event_, &count, sizeof count);
}

void RunLoopDescriptor::setTimeout(std::optional<std::chrono::nanoseconds> timeout) const noexcept {
    itimerspec setting{};
    if (timeout) {
        // Zero would switch the timer off.
        const auto span = std::max(*timeout, std::chrono::nanoseconds(1));
        const auto seconds = std::chrono::floor<std::chrono::seconds>(span);
        setting.it_value.tv_sec = seconds.count();
        setting.it_value.tv_nsec = (span - seconds).count();
    }
    ::timerfd_settime(timer_, 0, &setting, nullptr);
}

}  // namespace corvane
