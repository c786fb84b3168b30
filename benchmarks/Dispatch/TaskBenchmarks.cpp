// Tasks: awaiting what is ready, starting tasks on a pool, going from one serial executor to another.

#include <atomic>
#include <coroutine>
#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include <benchmark/benchmark.h>

#include <Corvane/Platform/Dispatch/TaskHandle.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/Limits.hpp"

#if CORVANE_PEER_ASIO
#include <boost/asio/awaitable.hpp>
#include <boost/asio/bind_executor.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>
#endif

namespace limits {

/// Coroutine frames that a thread keeps for the next ones.
class RecycledFrames {
  public:
    static void* take(std::size_t size) {
        void*& first = firstOf[classOf(size)];
        if (first != nullptr) return std::exchange(first, *static_cast<void**>(first));
        return ::operator new(classOf(size) * step);
    }

    static void giveBack(void* frame, std::size_t size) noexcept {
        *static_cast<void**>(frame) = std::exchange(firstOf[classOf(size)], frame);
    }

  private:
    static constexpr std::size_t step = 64;

    static std::size_t classOf(std::size_t size) noexcept { return (size + step - 1) / step; }

    static inline constinit thread_local void* firstOf[16] = {};
};

/// A lazy coroutine of an integer: symmetric transfer and nothing else.
class Task {
  public:
    struct promise_type {
        std::coroutine_handle<> parent = std::noop_coroutine();
        std::optional<int> value;
        std::exception_ptr failure;

        static void* operator new(std::size_t size) { return RecycledFrames::take(size); }

        static void operator delete(void* frame, std::size_t size) noexcept { RecycledFrames::giveBack(frame, size); }

        Task get_return_object() { return Task(std::coroutine_handle<promise_type>::from_promise(*this)); }

        std::suspend_always initial_suspend() noexcept { return {}; }

        struct End : std::suspend_always {
            std::coroutine_handle<> await_suspend(std::coroutine_handle<promise_type> task) noexcept {
                return task.promise().parent;
            }
        };

        End final_suspend() noexcept { return {}; }

        void return_value(int result) { value = result; }

        void unhandled_exception() { failure = std::current_exception(); }
    };

    explicit Task(std::coroutine_handle<promise_type> task) : task_(task) {}

    Task(Task&& other) noexcept : task_(std::exchange(other.task_, nullptr)) {}

    ~Task() {
        if (task_) task_.destroy();
    }

    bool await_ready() const noexcept { return false; }

    std::coroutine_handle<> await_suspend(std::coroutine_handle<> parent) const noexcept {
        task_.promise().parent = parent;
        return task_;
    }

    int await_resume() const {
        if (task_.promise().failure) std::rethrow_exception(task_.promise().failure);
        return *task_.promise().value;
    }

  private:
    std::coroutine_handle<promise_type> task_;
};

/// A coroutine that runs at once and by itself.
struct Detached {
    struct promise_type {
        Detached get_return_object() { return {}; }

        std::suspend_never initial_suspend() noexcept { return {}; }

        std::suspend_never final_suspend() noexcept { return {}; }

        void return_void() {}

        void unhandled_exception() { std::terminate(); }
    };
};

/// Goes on in `Executor`, which can `post`.
template <class Executor>
struct HopTo : std::suspend_always {
    Executor& executor;

    explicit HopTo(Executor& there) : executor(there) {}

    void await_suspend(std::coroutine_handle<> task) {
        executor.post([task] { task.resume(); });
    }
};

}  // namespace limits

namespace {

constexpr int count = 10'000;
// The class that carries the process's own nice value, as the peers' threads do.
constexpr corvane::QoSClass urgent = corvane::QoSClass::userInteractive;

struct Context {
    std::atomic<int> left = 0;
    limits::Event done;

    void hit() {
        if (left.fetch_sub(1, std::memory_order_acq_rel) == 1) done.set();
    }
};

[[gnu::noinline]] corvane::Task<int> readyCorvane(int value) {
    co_return value;
}

corvane::Task<int> sumCorvane() {
    int sum = 0;
    for (int i = 0; i < count; ++i)
        sum += co_await readyCorvane(i);
    co_return sum;
}

void nestedCorvane(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(corvane::runBlocking(sumCorvane()));
    state.SetItemsProcessed(state.iterations() * count);
}

[[gnu::noinline]] limits::Task readyLimit(int value) {
    co_return value;
}

limits::Task sumLimit() {
    int sum = 0;
    for (int i = 0; i < count; ++i)
        sum += co_await readyLimit(i);
    co_return sum;
}

limits::Detached storeSum(int* sum) {
    *sum = co_await sumLimit();
}

void nestedLimit(benchmark::State& state) {
    for (auto _ : state) {
        int sum = 0;
        storeSum(&sum);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

corvane::Task<> hitCorvane(Context* context) {
    benchmark::DoNotOptimize(co_await readyCorvane(1));
    context->hit();
}

void spawnCorvane(benchmark::State& state) {
    Context context;
    for (auto _ : state) {
        context.left = count;
        for (int i = 0; i < count; ++i)
            corvane::spawn(hitCorvane(&context), {.priority = urgent});
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

limits::Detached hitLimit(limits::Pool* pool, Context* context) {
    co_await limits::HopTo(*pool);
    benchmark::DoNotOptimize(co_await readyLimit(1));
    context->hit();
}

void spawnLimit(benchmark::State& state) {
    limits::Pool pool(2);
    Context context;
    for (auto _ : state) {
        context.left = count;
        for (int i = 0; i < count; ++i)
            hitLimit(&pool, &context);
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

corvane::Task<> hopCorvane(corvane::TaskExecutor there, Context* context) {
    // To the other executor and back.
    for (int i = 0; i < count / 2; ++i)
        benchmark::DoNotOptimize(co_await corvane::on(there, readyCorvane(i)));
    context->hit();
}

void hopCorvane(benchmark::State& state) {
    const auto here = corvane::DispatchQueue::serial("benchmark.here", {urgent, 0});
    const auto there = corvane::DispatchQueue::serial("benchmark.there", {urgent, 0});
    Context context;
    for (auto _ : state) {
        context.left = 1;
        corvane::spawn(hopCorvane(there, &context), {.executor = here});
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

limits::Detached hopLimit(limits::Strand* here, limits::Strand* there, Context* context) {
    for (int i = 0; i < count / 2; ++i) {
        co_await limits::HopTo(*there);
        co_await limits::HopTo(*here);
    }
    context->hit();
}

void hopLimit(benchmark::State& state) {
    limits::Pool pool(2);
    limits::Strand here(pool);
    limits::Strand there(pool);
    Context context;
    for (auto _ : state) {
        context.left = 1;
        hopLimit(&here, &there, &context);
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

#if CORVANE_PEER_ASIO
namespace asio = boost::asio;

[[gnu::noinline]] asio::awaitable<int> readyAsio(int value) {
    co_return value;
}

void nestedAsio(benchmark::State& state) {
    for (auto _ : state) {
        asio::io_context loop(1);
        int sum = 0;
        const auto add = [](int* total) -> asio::awaitable<void> {
            for (int i = 0; i < count; ++i)
                *total += co_await readyAsio(i);
        };
        asio::co_spawn(loop, add(&sum), asio::detached);
        loop.run();
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void spawnAsio(benchmark::State& state) {
    asio::thread_pool pool(2);
    Context context;
    for (auto _ : state) {
        context.left = count;
        for (int i = 0; i < count; ++i) {
            asio::co_spawn(pool, readyAsio(i), [&context](const std::exception_ptr&, int) { context.hit(); });
        }
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

void hopAsio(benchmark::State& state) {
    asio::thread_pool pool(2);
    const auto here = asio::make_strand(pool);
    const auto there = asio::make_strand(pool);
    Context context;
    const auto hop = [&]() -> asio::awaitable<void> {
        for (int i = 0; i < count / 2; ++i) {
            co_await asio::post(asio::bind_executor(there, asio::use_awaitable));
            co_await asio::post(asio::bind_executor(here, asio::use_awaitable));
        }
        context.hit();
    };
    for (auto _ : state) {
        context.left = 1;
        asio::co_spawn(pool, hop(), asio::detached);
        context.done.wait();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
#endif

void add(const char* name, void (*function)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, function)->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
    add("Nested/Corvane", nestedCorvane);
    add("Nested/Limit", nestedLimit);
    add("Spawn/Corvane", spawnCorvane);
    add("Spawn/Limit", spawnLimit);
    add("Hop/Corvane", hopCorvane);
    add("Hop/Limit", hopLimit);
#if CORVANE_PEER_ASIO
    add("Nested/Asio", nestedAsio);
    add("Spawn/Asio", spawnAsio);
    add("Hop/Asio", hopAsio);
#endif
    const std::string suffix = "/process_time/real_time";
    return runBenchmarks(argc, argv,
                         {{"Nested/Corvane" + suffix, "Nested/Limit" + suffix, "", 1.15},
                          {"Nested/Corvane" + suffix, "Nested/Asio" + suffix, "", 0.7},
                          {"Spawn/Corvane" + suffix, "Spawn/Limit" + suffix, "", 1.2},
                          {"Spawn/Corvane" + suffix, "Spawn/Asio" + suffix, "", 0.3},
                          {"Hop/Corvane" + suffix, "Hop/Limit" + suffix, "", 1.2},
                          {"Hop/Corvane" + suffix, "Hop/Asio" + suffix, "", 0.7}});
}
