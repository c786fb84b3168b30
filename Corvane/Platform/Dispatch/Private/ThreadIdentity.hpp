#pragma once

#include <sys/types.h>
#include <unistd.h>

namespace corvane {

/// The kernel's number of the calling thread, asked for once per thread.
[[nodiscard]] inline pid_t currentThreadID() noexcept {
    constinit static thread_local pid_t id = 0;
    if (id == 0) id = ::gettid();
    return id;
}

/// The number of the process's first thread.
[[nodiscard]] inline pid_t mainThreadID() noexcept {
    static const pid_t id = ::getpid();
    return id;
}

}  // namespace corvane
