// What live schedulers cost: for each tick, and while none is due.

#include <sys/resource.h>

#include <cstdint>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Concurrency/PeriodicalRepeatScheduler.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "benchmarks/Goals.hpp"

namespace {

using Schedulers = std::vector<std::shared_ptr<corvane::PeriodicalRepeatScheduler>>;

Schedulers startSchedulers(std::int64_t count, double period, std::int64_t& ticks) {
    Schedulers schedulers;
    for (std::int64_t i = 0; i < count; ++i) {
        schedulers.push_back(corvane::PeriodicalRepeatScheduler::make(period));
        schedulers.back()->start([&ticks] { ++ticks; });
    }
    return schedulers;
}

/// All are due at once, and the clock goes from one such instant to the next.
void tick(benchmark::State& state) {
    corvane::testing::VirtualClock clock;
    std::int64_t ticks = 0;
    const Schedulers schedulers = startSchedulers(state.range(0), 1.0, ticks);
    for (auto _ : state)
        clock.advance(1.0);
    if (ticks != state.iterations() * state.range(0)) state.SkipWithError("a tick got lost");
    state.counters["perTick"] =
        benchmark::Counter(static_cast<double>(ticks), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// The main run loop has nothing to do for 100 ms; it should be woken at their end, and never before.
void idle(benchmark::State& state) {
    std::int64_t ticks = 0;
    const Schedulers schedulers = startSchedulers(state.range(0), 3600.0, ticks);
    rusage before{}, after{};
    ::getrusage(RUSAGE_THREAD, &before);
    for (auto _ : state)
        corvane::RunLoop::main().runUntil(corvane::Clock::current().now() + std::chrono::milliseconds(100));
    ::getrusage(RUSAGE_THREAD, &after);
    state.counters["wakes"] =
        benchmark::Counter(static_cast<double>(after.ru_nvcsw - before.ru_nvcsw), benchmark::Counter::kAvgIterations);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::RegisterBenchmark("Tick", tick)->Arg(10)->Arg(10'000);
    benchmark::RegisterBenchmark("Idle", idle)->Arg(0)->Arg(10'000)->Iterations(5)->Unit(benchmark::kMillisecond);
    return runBenchmarks(
        argc, argv,
        {{"Tick/10000", "Tick/10", "perTick", 2.0}, {"Idle/10000/iterations:5", "Idle/0/iterations:5", "wakes", 1.0}});
}
