#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <Corvane/Platform/FatalError.hpp>
#include <Corvane/Testing/Private/LoopbackListener.hpp>

namespace corvane::testing {

namespace {

/// A socket bound to `port` of 127.0.0.1, or to a free one for zero, which `port` then names.
FileDescriptor boundSocket(std::uint16_t& port) {
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int yes = 1;
    ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket.get(), generic, size) != 0 || ::getsockname(socket.get(), generic, &size) != 0) {
        fatalError("LoopbackServer cannot bind a port of 127.0.0.1");
    }
    port = ntohs(address.sin_port);
    return socket;
}

}  // namespace

LoopbackListener::LoopbackListener() : reservation_(boundSocket(port_)) {
    open();
}

void LoopbackListener::open() {
    if (listening_.isOpen()) return;
    listening_ = boundSocket(port_);
    if (::listen(listening_.get(), SOMAXCONN) != 0) fatalError("LoopbackServer cannot listen on its port");
}

FileDescriptor LoopbackListener::accept() const noexcept {
    FileDescriptor connection(::accept4(listening_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    const int yes = 1;
    if (connection.isOpen()) ::setsockopt(connection.get(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    return connection;
}

}  // namespace corvane::testing
