#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A TCP connection to 127.0.0.1 that sends and receives bytes as they are: what tests of a server need.
class RawClient {
  public:
    explicit RawClient(std::uint16_t port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void send(std::string_view bytes) const;

    /// Whatever comes until `text` has come, inclusive; everything when the connection ends before.
    [[nodiscard]] std::string receiveUntil(std::string_view text);

    /// Everything until the server closes or resets the connection.
    [[nodiscard]] std::string receiveAll();

    /// How the connection ended, after `receiveAll`.
    [[nodiscard]] bool wasReset() const noexcept { return wasReset_; }

    void hangUp() noexcept;

  private:
    [[nodiscard]] bool receiveMore();

    int socket_;
    bool wasReset_ = false;
    std::string received_;
};
