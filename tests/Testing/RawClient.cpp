#include "RawClient.hpp"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

RawClient::RawClient(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    // Only a test that would hang ever waits this long.
    const timeval patience{.tv_sec = 20, .tv_usec = 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

RawClient::~RawClient() {
    hangUp();
}

void RawClient::hangUp() noexcept {
    if (const int socket = std::exchange(socket_, -1); socket >= 0) ::close(socket);
}

void RawClient::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) return;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

std::string RawClient::receiveUntil(std::string_view text) {
    std::size_t found = 0;
    while ((found = received_.find(text)) == std::string::npos) {
        if (!receiveMore()) return std::exchange(received_, {});
    }
    std::string head = received_.substr(0, found + text.size());
    received_.erase(0, head.size());
    return head;
}

std::string RawClient::receiveAll() {
    while (receiveMore()) {
    }
    return std::exchange(received_, {});
}

bool RawClient::receiveMore() {
    char bytes[16 * 1024];
    const ssize_t count = ::recv(socket_, bytes, sizeof bytes, 0);
    if (count < 0) wasReset_ = errno == ECONNRESET;
    if (count <= 0) return false;
    received_.append(bytes, static_cast<std::size_t>(count));
    return true;
}
