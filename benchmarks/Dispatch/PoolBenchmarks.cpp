// Many small blocks given to two worker threads by a third.

#include <atomic>
#include <thread>

#include <benchmark/benchmark.h>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/Limits.hpp"

#if CORVANE_PEER_ASIO
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/thread_pool.hpp>
#endif
#if CORVANE_PEER_QT
#include <QThreadPool>
#endif
#if CORVANE_PEER_TBB
#include <tbb/task_arena.h>
#endif

namespace {

constexpr int blocks = 100'000;

struct Context {
    std::atomic<int> left = 0;
    limits::Event done;

    void hit() {
        if (left.fetch_sub(1, std::memory_order_acq_rel) == 1) done.set();
    }
};

template <class Post>
void drive(benchmark::State& state, const Post& post) {
    Context context;
    for (auto _ : state) {
        context.left = blocks;
        for (int i = 0; i < blocks; ++i)
            post(context);
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * blocks);
}

// The class that carries the process's own nice value, as the peers' threads do.
constexpr corvane::DispatchQoS urgent{corvane::QoSClass::userInteractive, 0};

void globalCorvane(benchmark::State& state) {
    corvane::DispatchQueue& queue = corvane::DispatchQueue::global(urgent.qosClass);
    drive(state, [&](Context& context) { queue.async([&context] { context.hit(); }); });
}

void globalLimit(benchmark::State& state) {
    limits::Pool pool(2);
    drive(state, [&](Context& context) { pool.post([&context] { context.hit(); }); });
}

void serialCorvane(benchmark::State& state) {
    const auto queue = corvane::DispatchQueue::serial("benchmark", urgent);
    drive(state, [&](Context& context) { queue->async([&context] { context.hit(); }); });
}

void serialLimit(benchmark::State& state) {
    limits::Pool pool(2);
    limits::Strand strand(pool);
    drive(state, [&](Context& context) { strand.post([&context] { context.hit(); }); });
}

#if CORVANE_PEER_ASIO
void globalAsio(benchmark::State& state) {
    boost::asio::thread_pool pool(2);
    drive(state, [&](Context& context) { boost::asio::post(pool, [&context] { context.hit(); }); });
}

void serialAsio(benchmark::State& state) {
    boost::asio::thread_pool pool(2);
    auto strand = boost::asio::make_strand(pool);
    drive(state, [&](Context& context) { boost::asio::post(strand, [&context] { context.hit(); }); });
}
#endif

#if CORVANE_PEER_QT
void globalQt(benchmark::State& state) {
    QThreadPool pool;
    pool.setMaxThreadCount(2);
    drive(state, [&](Context& context) { pool.start([&context] { context.hit(); }); });
}
#endif

#if CORVANE_PEER_TBB
void globalTBB(benchmark::State& state) {
    tbb::task_arena arena(2, 0);
    drive(state, [&](Context& context) { arena.enqueue([&context] { context.hit(); }); });
}
#endif

void add(const char* name, void (*function)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, function)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
    add("Global/Corvane", globalCorvane);
    add("Global/Limit", globalLimit);
    add("Serial/Corvane", serialCorvane);
    add("Serial/Limit", serialLimit);
#if CORVANE_PEER_ASIO
    add("Global/Asio", globalAsio);
    add("Serial/Asio", serialAsio);
#endif
#if CORVANE_PEER_QT
    add("Global/QThreadPool", globalQt);
#endif
#if CORVANE_PEER_TBB
    add("Global/TBB", globalTBB);
#endif
    const std::string suffix = "/process_time/real_time";
    return runBenchmarks(argc, argv,
                         {{"Global/Corvane" + suffix, "Global/Limit" + suffix, "", 1.3},
                          {"Global/Corvane" + suffix, "Global/QThreadPool" + suffix, "", 0.6},
                          {"Serial/Corvane" + suffix, "Serial/Limit" + suffix, "", 1.3},
                          {"Serial/Corvane" + suffix, "Serial/Asio" + suffix, "", 0.35}});
}
