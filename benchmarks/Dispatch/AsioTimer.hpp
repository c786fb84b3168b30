#pragma once

#if CORVANE_PEER_ASIO

#include <chrono>
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

/// One timer is restarted again and again, among as many others as the argument says.
inline void asioTimer(benchmark::State& state) {
    boost::asio::io_context context(1);
    std::vector<boost::asio::steady_timer> others;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        others.emplace_back(context, std::chrono::seconds(10) + std::chrono::milliseconds(i)).async_wait([](auto) {});
    }
    boost::asio::steady_timer timer(context);
    std::uint64_t count = 0;
    for (auto _ : state) {
        // Cancels the wait before; its handler is queued and has to run.
        timer.expires_after(std::chrono::milliseconds(300));
        timer.async_wait([](auto) {});
        if (++count % 256 == 0) context.poll();
    }
}

#endif
