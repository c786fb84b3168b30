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
