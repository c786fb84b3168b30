// One event after the other takes the place of the one before, and starts its 300 ms over; alone, or among other
// timers.

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>

#include "benchmarks/Dispatch/AsioTimer.hpp"
#include "benchmarks/Goals.hpp"
#include "benchmarks/Limits.hpp"

#if CORVANE_PEER_QT
#include <QCoreApplication>
#include <QTimer>
#endif

namespace {

/// A number moves, and one callable takes the place of another.
void limit(benchmark::State& state) {
    std::atomic<std::uint64_t> deadline = 0;
    limits::SmallFunction waiting;
    int fired = 0;
    for (auto _ : state) {
        waiting = limits::SmallFunction([&fired] { ++fired; });
        deadline.store(limits::nanoseconds() + 300'000'000, std::memory_order_release);
        benchmark::ClobberMemory();
    }
}

void corvaneDebouncer(benchmark::State& state) {
    std::vector<std::shared_ptr<corvane::PreConcurrencyEventDebouncer>> others;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const double delay = 10 + 0.001 * static_cast<double>(i);
        others.push_back(corvane::PreConcurrencyEventDebouncer::make(std::nullopt, delay));
        others.back()->debounce([] {});
    }
    const auto debouncer = corvane::PreConcurrencyEventDebouncer::make();
    int fired = 0, denied = 0;
    for (auto _ : state)
        debouncer->debounce([&fired] { ++fired; }, [&denied] { ++denied; });
    debouncer->invalidate();
    for (const auto& other : others)
        other->invalidate();
    if (denied != state.iterations()) state.SkipWithError("an event got lost");
}

#if CORVANE_PEER_QT
void qtTimer(benchmark::State& state) {
    std::vector<std::unique_ptr<QTimer>> others;
    for (int i = 0; i < state.range(0); ++i) {
        others.push_back(std::make_unique<QTimer>());
        others.back()->start(10'000 + i);
    }
    QTimer timer;
    timer.setSingleShot(true);
    for (auto _ : state)
        timer.start(300);
}
#endif

}  // namespace

int main(int argc, char** argv) {
    // An application has threads; without any, the C library leaves atomic operations out.
    std::jthread([] {}).join();
    benchmark::RegisterBenchmark("Debounce/Limit", limit);
    benchmark::RegisterBenchmark("Debounce/Corvane", corvaneDebouncer)->Arg(0)->Arg(1000);
#if CORVANE_PEER_ASIO
    benchmark::RegisterBenchmark("Debounce/Asio", asioTimer)->Arg(0)->Arg(1000)->Iterations(100'000);
#endif
#if CORVANE_PEER_QT
    QCoreApplication application(argc, argv);
    benchmark::RegisterBenchmark("Debounce/Qt", qtTimer)->Arg(0)->Arg(1000)->Iterations(100'000);
#endif
    return runBenchmarks(argc, argv,
                         {{"Debounce/Corvane/0", "Debounce/Asio/0/iterations:100000", "", 0.2},
                          {"Debounce/Corvane/0", "Debounce/Qt/0/iterations:100000", "", 1.0},
                          {"Debounce/Corvane/1000", "Debounce/Asio/1000/iterations:100000", "", 0.2},
                          {"Debounce/Corvane/1000", "Debounce/Qt/1000/iterations:100000", "", 0.2},
                          {"Debounce/Corvane/1000", "Debounce/Corvane/0", "", 1.3}});
}
