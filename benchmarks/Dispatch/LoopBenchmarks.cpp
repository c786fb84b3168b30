// A block handed from one thread to the loop of another.

#include <sched.h>

#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/Limits.hpp"

#if CORVANE_PEER_ASIO
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#endif

namespace {

struct Context {
    std::uint64_t count = 0;
    std::uint64_t target = 0;
    std::uint64_t sum = 0;
    limits::Event done;
};

/// A callback of 64 bytes, as closures with a few captures are.
struct Callback {
    Context* context;
    std::uint64_t values[7];

    void operator()() const {
        context->sum += values[3];
        if (++context->count == context->target) context->done.set();
    }
};

static_assert(sizeof(Callback) == 64);

/// A thread's own run loop; it is the engine of the main one.
class CorvaneLoop {
  public:
    CorvaneLoop() { isRunning_.wait(); }

    ~CorvaneLoop() {
        loop_->perform([this] { loop_->stop(); });
        thread_.join();
    }

    void post(const Callback& callback) { loop_->perform(callback); }

  private:
    limits::Event isRunning_;
    corvane::RunLoop* loop_ = nullptr;
    std::thread thread_{[this] {
        loop_ = &corvane::RunLoop::current();
        isRunning_.set();
        loop_->run();
    }};
};

using LimitFutexLoop = limits::Loop<limits::WakeBy::futex>;
using LimitEventLoop = limits::Loop<limits::WakeBy::eventDescriptor>;

#if CORVANE_PEER_ASIO
class AsioLoop {
  public:
    ~AsioLoop() {
        guard_.reset();
        thread_.join();
    }

    void post(const Callback& callback) { boost::asio::post(context_, callback); }

  private:
    boost::asio::io_context context_{1};
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> guard_{context_.get_executor()};
    std::thread thread_{[this] { context_.run(); }};
};
#endif

template <class Loop>
void burst(benchmark::State& state) {
    Loop loop;
    Context context;
    const auto count = static_cast<std::uint64_t>(state.range(0));
    for (auto _ : state) {
        context.count = 0;
        context.target = count;
        for (std::uint64_t i = 0; i < count; ++i)
            loop.post(Callback{&context, {i, i, i, i, i, i, i}});
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The main queue: a thread posts, the main thread runs its loop.
void burstMainQueue(benchmark::State& state) {
    Context context;
    const auto count = static_cast<std::uint64_t>(state.range(0));
    corvane::DispatchQueue& queue = corvane::DispatchQueue::main();
    for (auto _ : state) {
        context.count = 0;
        context.target = count + 1;
        std::thread poster([&] {
            for (std::uint64_t i = 0; i < count; ++i)
                queue.async(Callback{&context, {i, i, i, i, i, i, i}});
            queue.async([] { corvane::RunLoop::main().stop(); });
        });
        corvane::RunLoop::main().run();
        poster.join();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void pinToOneProcessor(bool isPinned) {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    const unsigned count = isPinned ? 1 : std::thread::hardware_concurrency();
    for (unsigned number = 0; number < count; ++number)
        CPU_SET(number, &processors);
    sched_setaffinity(0, sizeof processors, &processors);
}

/// Pinned, so that what is measured is the software's path and two context switches, not the wake of a processor.
template <class Loop>
void roundTrip(benchmark::State& state) {
    pinToOneProcessor(true);
    {
        Loop loop;
        Context context;
        std::vector<double> times;
        for (auto _ : state) {
            context.count = 0;
            context.target = 1;
            const std::uint64_t start = limits::nanoseconds();
            loop.post(Callback{&context, {}});
            context.done.wait();
            times.push_back(static_cast<double>(limits::nanoseconds() - start));
        }
        state.counters["p50_ns"] = limits::percentile(times, 0.5);
        state.counters["p99_ns"] = limits::percentile(times, 0.99);
    }
    pinToOneProcessor(false);
}

template <class Loop>
void registerLoop(const std::string& name) {
    benchmark::RegisterBenchmark(("Burst/" + name).c_str(), burst<Loop>)
        ->Arg(100'000)
        ->UseRealTime()
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("RoundTrip/" + name).c_str(), roundTrip<Loop>)->Iterations(20'000)->UseRealTime();
}

}  // namespace

int main(int argc, char** argv) {
    registerLoop<CorvaneLoop>("Corvane");
    registerLoop<LimitFutexLoop>("LimitFutex");
    registerLoop<LimitEventLoop>("LimitEventDescriptor");
#if CORVANE_PEER_ASIO
    registerLoop<AsioLoop>("Asio");
#endif
    benchmark::RegisterBenchmark("Burst/CorvaneMainQueue", burstMainQueue)
        ->Arg(100'000)
        ->UseRealTime()
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMillisecond);
    const std::string burstName = "/100000/process_time/real_time";
    const std::string tripName = "/iterations:20000/real_time";
    return runBenchmarks(argc, argv,
                         {{"Burst/Corvane" + burstName, "Burst/LimitEventDescriptor" + burstName, "", 1.3},
                          {"Burst/Corvane" + burstName, "Burst/Asio" + burstName, "", 0.5},
                          {"RoundTrip/Corvane" + tripName, "RoundTrip/Asio" + tripName, "p50_ns", 1.1}});
}
