#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

#include <benchmark/benchmark.h>

#include "Origin.hpp"

inline double microsecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

/// Measures `ask` once an iteration: percentiles, and CPU of the client per thousand.
template <class Ask>
void measureEach(benchmark::State& state, Ask ask) {
    for (int i = 0; i < 20; ++i)
        ask();
    std::vector<double> times;
    const double cpu = cpuSeconds();
    for (auto iteration : state) {
        const auto start = std::chrono::steady_clock::now();
        ask();
        times.push_back(microsecondsSince(start));
    }
    state.counters["cpu_ms_per_1k"] = (cpuSeconds() - cpu) * 1e6 / static_cast<double>(times.size());
    std::ranges::sort(times);
    state.counters["p50_us"] = times[times.size() / 2];
    state.counters["p99_us"] = times[times.size() * 99 / 100];
}

/// Measures a client that keeps 64 requests for one document in flight: requests per second, and its CPU per thousand.
template <class Client>
void measureMany(benchmark::State& state) {
    Client client;
    const auto document = static_cast<std::size_t>(state.range(0));
    const std::size_t total = document == 0 ? 6400 : 1280;
    client.getMany(document, 640);
    const double cpu = cpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    for (auto iteration : state)
        client.getMany(document, total);
    const double requests = static_cast<double>(total) * static_cast<double>(state.iterations());
    state.counters["per_s"] = requests * 1e6 / microsecondsSince(start);
    state.counters["cpu_ms_per_1k"] = (cpuSeconds() - cpu) * 1e6 / requests;
}
