#pragma once

#include <cstdint>

#include <Corvane/Platform/Private/FileDescriptor.hpp>

namespace corvane::testing {

/// A listening socket on 127.0.0.1 that can be closed and opened again on the same port. The port is kept by
/// a second socket that is bound and never listens, so that nobody else gets it while connections are
/// refused.
class LoopbackListener {
  public:
    /// Takes a free port and listens. Stops the process when the system gives no socket.
    LoopbackListener();

    [[nodiscard]] std::uint16_t port() const noexcept { return port_; }

    /// The listening socket, -1 while it is closed.
    [[nodiscard]] int descriptor() const noexcept { return listening_.get(); }

    void open();

    void close() noexcept { listening_.close(); }

    /// The next connection, not open when none waits.
    [[nodiscard]] FileDescriptor accept() const noexcept;

  private:
    std::uint16_t port_ = 0;
    FileDescriptor reservation_;
    FileDescriptor listening_;
};

}  // namespace corvane::testing
