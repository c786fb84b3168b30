// The pattern of a debouncer: one timer of 300 ms is restarted again and again, alone or among others.

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>

#include "benchmarks/Dispatch/AsioTimer.hpp"
#include "benchmarks/Goals.hpp"
#include "benchmarks/Limits.hpp"

#if CORVANE_PEER_UV
#include <uv.h>
#endif

namespace {

/// Only a number moves; whoever waits looks at it when the old one has passed.
void limit(benchmark::State& state) {
    std::atomic<std::uint64_t> deadline = 0;
    for (auto _ : state)
        deadline.store(limits::nanoseconds() + 300'000'000, std::memory_order_release);
    benchmark::DoNotOptimize(deadline);
}

void corvaneTimer(benchmark::State& state) {
    std::vector<std::shared_ptr<corvane::Timer>> others;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        others.push_back(corvane::Timer::scheduled(10 + 0.001 * static_cast<double>(i), true, [](corvane::Timer&) {}));
    }
    const auto timer = corvane::Timer::scheduled(0.3, false, [](corvane::Timer&) {});
    for (auto _ : state)
        timer->restart(0.3);
    timer->invalidate();
    for (const auto& other : others)
        other->invalidate();
}

/// The dearer way, a timer of its own each time.
void corvaneNewTimer(benchmark::State& state) {
    std::shared_ptr<corvane::Timer> timer;
    for (auto _ : state) {
        if (timer != nullptr) timer->invalidate();
        timer = corvane::Timer::scheduled(0.3, false, [](corvane::Timer&) {});
    }
    if (timer != nullptr) timer->invalidate();
}

#if CORVANE_PEER_UV
void uvTimer(benchmark::State& state) {
    uv_loop_t loop;
    uv_loop_init(&loop);
    std::vector<uv_timer_t> others(static_cast<std::size_t>(state.range(0)));
    const auto callback = [](uv_timer_t*) {};
    for (std::size_t i = 0; i < others.size(); ++i) {
        uv_timer_init(&loop, &others[i]);
        uv_timer_start(&others[i], callback, 10'000 + i, 0);
    }
    uv_timer_t timer;
    uv_timer_init(&loop, &timer);
    for (auto _ : state)
        uv_timer_start(&timer, callback, 300, 0);
    uv_walk(&loop, [](uv_handle_t* handle, void*) { uv_close(handle, nullptr); }, nullptr);
    uv_run(&loop, UV_RUN_DEFAULT);
    uv_loop_close(&loop);
}
#endif

}  // namespace

int main(int argc, char** argv) {
    benchmark::RegisterBenchmark("Rearm/Limit", limit);
    benchmark::RegisterBenchmark("Rearm/Corvane", corvaneTimer)->Arg(0)->Arg(1000);
    benchmark::RegisterBenchmark("NewTimer/Corvane", corvaneNewTimer);
#if CORVANE_PEER_ASIO
    benchmark::RegisterBenchmark("Rearm/Asio", asioTimer)->Arg(0)->Arg(1000)->Iterations(100'000);
#endif
#if CORVANE_PEER_UV
    benchmark::RegisterBenchmark("Rearm/libuv", uvTimer)->Arg(0)->Arg(1000)->Iterations(100'000);
#endif
    return runBenchmarks(argc, argv,
                         {{"Rearm/Corvane/0", "Rearm/Limit", "", 1.5},
                          {"Rearm/Corvane/1000", "Rearm/Limit", "", 1.5},
                          {"Rearm/Corvane/1000", "Rearm/libuv/1000/iterations:100000", "", 0.2},
                          {"Rearm/Corvane/1000", "Rearm/Asio/1000/iterations:100000", "", 0.05}});
}
