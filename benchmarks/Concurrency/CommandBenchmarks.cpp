// What a command costs over a direct call of its action.

#include <functional>
#include <thread>

#include <benchmark/benchmark.h>

#include <Corvane/Concurrency/CommandWith.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>

#include "benchmarks/Goals.hpp"

namespace {

struct Page {
    std::int64_t taps = 0;

    [[gnu::noinline]] void tap() { ++taps; }
};

template <class Call>
void drive(benchmark::State& state, Page& page, const Call& call) {
    for (auto _ : state) {
        call();
        benchmark::ClobberMemory();
    }
    if (page.taps < state.iterations()) state.SkipWithError("a call got lost");
}

void direct(benchmark::State& state) {
    Page page;
    drive(state, page, [&] { page.tap(); });
}

void function(benchmark::State& state) {
    Page page;
    std::function<void()> callback = [&page] { page.tap(); };
    benchmark::DoNotOptimize(callback);
    drive(state, page, [&] { callback(); });
}

/// A callback that is copied before it is called, as one that may be replaced in its own call has to be.
void copiedFunction(benchmark::State& state) {
    Page page;
    const auto callback = std::make_shared<std::function<void()>>([&page] { page.tap(); });
    drive(state, page, [&] {
        const auto copy = callback;
        benchmark::DoNotOptimize(copy);
        (*copy)();
    });
}

void silent(benchmark::State& state) {
    Page page;
    const auto command = corvane::command({.name = "tap", .isSilent = true}, [&page] { page.tap(); });
    drive(state, page, [&] { command.perform(); });
}

void silentOnMain(benchmark::State& state) {
    Page page;
    const auto command = corvane::commandOnMain({.name = "tap", .isSilent = true}, [&page] { page.tap(); });
    drive(state, page, [&] { command.perform(); });
}

/// With a line that nobody wants to see.
void loggedNowhere(benchmark::State& state) {
    Page page;
    const auto command = corvane::command([&page] { page.tap(); });
    drive(state, page, [&] { command.perform(); });
}

}  // namespace

int main(int argc, char** argv) {
    // An application has threads; without any, the C library leaves atomic operations out.
    std::jthread([] {}).join();
    benchmark::RegisterBenchmark("Call/Direct", direct);
    benchmark::RegisterBenchmark("Call/Function", function);
    benchmark::RegisterBenchmark("Call/CopiedFunction", copiedFunction);
    benchmark::RegisterBenchmark("Call/SilentCommand", silent);
    benchmark::RegisterBenchmark("Call/SilentCommandOnMain", silentOnMain);
    benchmark::RegisterBenchmark("Call/Command", loggedNowhere);
    return runBenchmarks(argc, argv,
                         {{"Call/SilentCommand", "Call/CopiedFunction", "", 1.2},
                          {"Call/SilentCommandOnMain", "Call/CopiedFunction", "", 1.3}});
}
