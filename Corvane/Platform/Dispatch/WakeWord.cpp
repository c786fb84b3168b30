#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <Corvane/Platform/Dispatch/Private/WakeWord.hpp>

namespace corvane {

bool WakeWord::waitOnce(const std::chrono::nanoseconds* timeout) noexcept {
    State expected = State::idle;
    if (state_.compare_exchange_strong(expected, State::waiting, std::memory_order_acq_rel)) {
        timespec span{};
        if (timeout != nullptr) {
            const auto seconds = std::chrono::floor<std::chrono::seconds>(*timeout);
            span.tv_sec = seconds.count();
            span.tv_nsec = (*timeout - seconds).count();
        }
        ::syscall(SYS_futex, &state_, FUTEX_WAIT_PRIVATE, State::waiting, timeout != nullptr ? &span : nullptr, nullptr,
                  0);
    }
    return state_.exchange(State::idle, std::memory_order_acq_rel) == State::set;
}

void WakeWord::wakeSleeper() noexcept {
    ::syscall(SYS_futex, &state_, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

}  // namespace corvane
