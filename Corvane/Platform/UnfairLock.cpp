#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

namespace {

// A critical section is shorter than a trip into the kernel: look this often before going to sleep.
constexpr int spinLimit = 100;

void pauseBriefly() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

/// Like the standard's locks, this one leaves the caller's errno alone.
void futex(std::atomic<std::uint32_t>& word, int operation, std::uint32_t value) noexcept {
    const int errnoBefore = errno;
    ::syscall(SYS_futex, &word, operation, value, nullptr, nullptr, 0);
    errno = errnoBefore;
}

static_assert(sizeof(std::atomic<std::uint32_t>) == 4 && std::atomic<std::uint32_t>::is_always_lock_free,
              "the kernel waits on a plain 32-bit word");

}  // namespace

void UnfairLock::lockContended() noexcept {
    for (int spin = 0; spin < spinLimit; ++spin) {
        pauseBriefly();
        if (state_.load(std::memory_order_relaxed) == unlocked && try_lock()) return;
    }
    // From here on the word says that somebody may sleep, also once this thread holds the lock: it cannot
    // know whether it was the only one, and a wake too many is harmless.
    while (state_.exchange(lockedWithSleepers, std::memory_order_acquire) != unlocked) {
        futex(state_, FUTEX_WAIT_PRIVATE, lockedWithSleepers);
    }
}

void UnfairLock::wakeOne() noexcept {
    // The lock may be gone by now: the kernel looks at the address only, and waking nobody is no error.
    futex(state_, FUTEX_WAKE_PRIVATE, 1);
}

}  // namespace corvane
