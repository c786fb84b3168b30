// An increment under a lock, by one thread and by two.

#include <cstdint>
#include <mutex>

#include <benchmark/benchmark.h>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

#include "../Goals.hpp"

#if CORVANE_PEER_QT
#include <QMutex>
#endif

namespace {

template <class Lock>
void increment(benchmark::State& state) {
    alignas(64) static Lock lock;
    alignas(64) static std::uint64_t count;
    for (auto _ : state) {
        lock.lock();
        ++count;
        benchmark::ClobberMemory();
        lock.unlock();
    }
}

void AtomicMutate(benchmark::State& state) {
    alignas(64) static corvane::Atomic<std::uint64_t> count(0);
    for (auto _ : state) {
        count.mutate([](std::uint64_t& value) { ++value; });
        benchmark::ClobberMemory();
    }
}

void AtomicModify(benchmark::State& state) {
    alignas(64) static corvane::Atomic<std::uint64_t> count(0);
    for (auto _ : state)
        ++count;
}

void UnfairLock(benchmark::State& state) {
    increment<corvane::UnfairLock>(state);
}

void StdMutex(benchmark::State& state) {
    increment<std::mutex>(state);
}

BENCHMARK(AtomicMutate)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(AtomicModify)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(UnfairLock)->Threads(1)->Threads(2)->UseRealTime();
BENCHMARK(StdMutex)->Threads(1)->Threads(2)->UseRealTime();

#if CORVANE_PEER_QT
void QtMutex(benchmark::State& state) {
    increment<QMutex>(state);
}

BENCHMARK(QtMutex)->Threads(1)->Threads(2)->UseRealTime();
#endif

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv,
                         {{"AtomicMutate/real_time/threads:1", "StdMutex/real_time/threads:1", "", 1.0},
                          {"AtomicMutate/real_time/threads:2", "StdMutex/real_time/threads:2", "", 1.0},
                          {"AtomicMutate/real_time/threads:1", "QtMutex/real_time/threads:1", "", 1.0},
                          {"AtomicMutate/real_time/threads:2", "QtMutex/real_time/threads:2", "", 1.0}});
}
