#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <optional>

namespace corvane::network {

/// What tells a socket from one that has got its number since somebody closed it (SO_COOKIE, Linux 4.12). Absent
/// when there is no socket of that number, or the kernel does not say.
[[nodiscard]] inline std::optional<std::uint64_t> socketCookie(int socket) noexcept {
    std::uint64_t cookie = 0;
    socklen_t bytes = sizeof cookie;
    if (::getsockopt(socket, SOL_SOCKET, SO_COOKIE, &cookie, &bytes) != 0) return std::nullopt;
    return cookie;
}

}  // namespace corvane::network
