#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

/// A port of 127.0.0.1 to which a connection attempt gets no answer at all: its queue is full.
class FullBacklog {
  public:
    FullBacklog() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        ::bind(listener_, generic, size);
        ::listen(listener_, 0);
        ::getsockname(listener_, generic, &size);
        port_ = ntohs(address.sin_port);
        // One more than the queue holds; the kernel drops the attempts of all others.
        for (int i = 0; i < 2; ++i) {
            fillers_.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
            ::connect(fillers_.back(), generic, size);
        }
    }

    ~FullBacklog() {
        for (const int filler : fillers_)
            ::close(filler);
        ::close(listener_);
    }

    FullBacklog(const FullBacklog&) = delete;
    FullBacklog& operator=(const FullBacklog&) = delete;

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + '/'; }

  private:
    int listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::vector<int> fillers_;
    std::uint16_t port_ = 0;
};
