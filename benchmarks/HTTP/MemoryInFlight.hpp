#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>

#include "Origin.hpp"

/// Bytes of this process that are in memory.
inline double residentBytes() {
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

/// What a request costs while it waits for its answer on a connection of its own: resident memory over a thousand of
/// them. The server is a socket of this process that accepts, reads and never answers; its share is the kernel's.
inline void measureMemoryInFlight(benchmark::State& state) {
    constexpr std::size_t count = 1000;
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    require(::bind(listener, generic, size) == 0 && ::listen(listener, SOMAXCONN) == 0 &&
                ::getsockname(listener, generic, &size) == 0,
            "listen");

    corvane::URLSessionConfiguration configuration = corvane::URLSessionConfiguration::ephemeral();
    configuration.maximumConnectionsPerHost = count;
    const auto session = corvane::URLSession::make(configuration, nullptr, corvane::DispatchQueue::main());
    const corvane::URLRequest request(
        corvane::URL::parse("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/2k.json").value());
    for (auto iteration : state) {
        std::size_t toFinish = 0;
        std::vector<int> connections;
        const auto startMany = [&](std::size_t requests) {
            for (std::size_t i = 0; i < requests; ++i) {
                ++toFinish;
                session->dataTask(request, [&toFinish](auto, auto, auto) { --toFinish; })->resume();
            }
            while (connections.size() < toFinish) {
                connections.push_back(::accept(listener, nullptr, nullptr));
                char bytes[1024];
                require(::recv(connections.back(), bytes, sizeof bytes, 0) > 0, "a request");
            }
        };
        // The first ones pay for what all share.
        startMany(10);
        const double before = residentBytes();
        startMany(count - 10);
        state.counters["bytes_per_request"] = (residentBytes() - before) / static_cast<double>(count - 10);
        session->invalidateAndCancel();
        while (toFinish > 0)
            corvane::RunLoop::main().runOnce();
        for (const int connection : connections)
            ::close(connection);
    }
    ::close(listener);
}
