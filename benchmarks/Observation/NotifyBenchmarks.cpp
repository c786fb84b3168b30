// One value is assigned, and 1, 10 or 1,000 observers are told of it.

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Observation/Observable.hpp>

#include "benchmarks/Goals.hpp"

#if CORVANE_PEER_QT
#include <QPauseAnimation>
#endif
#if CORVANE_PEER_SIGC
#include <sigc++/sigc++.h>
#endif

namespace {

struct Listener {
    std::int64_t sum = 0;

    void hear(int value) { sum += value; }
};

/// Has every listener connected and then assigns again and again.
template <class Connect, class Assign>
void drive(benchmark::State& state, const Connect& connect, const Assign& assign) {
    std::vector<Listener> listeners(static_cast<std::size_t>(state.range(0)));
    for (Listener& listener : listeners)
        connect(listener);
    int value = 0;
    for (auto _ : state) {
        assign(++value);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The least that stays safe when listeners come and go meanwhile: a snapshot, taken under a lock.
void limit(benchmark::State& state) {
    using Callbacks = std::vector<std::function<void(int)>>;
    std::mutex mutex;
    const auto callbacks = std::make_shared<Callbacks>();
    drive(
        state, [&](Listener& listener) { callbacks->emplace_back([&listener](int value) { listener.hear(value); }); },
        [&](int value) {
            std::shared_ptr<const Callbacks> snapshot;
            {
                const std::lock_guard lock(mutex);
                snapshot = callbacks;
            }
            for (const auto& callback : *snapshot)
                callback(value);
        });
}

template <corvane::ObservableOption option>
void corvaneObservable(benchmark::State& state) {
    corvane::Observable<int> number(0);
    const auto observer = std::make_shared<int>();
    drive(
        state,
        [&](Listener& listener) {
            number.addObserver(observer, false, option,
                               [&listener](int value, corvane::ObservableOption) { listener.hear(value); });
        },
        [&](int value) { number.setValue(value); });
}

#if CORVANE_PEER_QT
void qtSignal(benchmark::State& state) {
    // Any object with a signal that carries a number.
    QPauseAnimation source;
    drive(
        state,
        [&](Listener& listener) {
            QObject::connect(
                &source, &QAbstractAnimation::currentLoopChanged, &source,
                [&listener](int value) { listener.hear(value); }, Qt::DirectConnection);
        },
        [&](int value) { source.currentLoopChanged(value); });
}
#endif

#if CORVANE_PEER_SIGC
void sigcSignal(benchmark::State& state) {
    sigc::signal<void(int)> source;
    drive(
        state, [&](Listener& listener) { source.connect([&listener](int value) { listener.hear(value); }); },
        [&](int value) { source.emit(value); });
}
#endif

void add(const char* name, void (*function)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, function)->Arg(1)->Arg(10)->Arg(1000);
}

}  // namespace

int main(int argc, char** argv) {
    // An application has threads; without any, the C library leaves atomic operations out.
    std::jthread([] {}).join();
    add("Notify/Limit", limit);
    add("Notify/Corvane", corvaneObservable<corvane::ObservableOption::new_>);
    add("Notify/CorvaneChanged", corvaneObservable<corvane::ObservableOption::changed>);
#if CORVANE_PEER_QT
    add("Notify/Qt", qtSignal);
#endif
#if CORVANE_PEER_SIGC
    add("Notify/sigc++", sigcSignal);
#endif
    return runBenchmarks(argc, argv,
                         {{"Notify/Corvane/1", "Notify/Limit/1", "", 1.2},
                          {"Notify/Corvane/10", "Notify/Limit/10", "", 1.2},
                          {"Notify/Corvane/1000", "Notify/Limit/1000", "", 1.2},
                          {"Notify/Corvane/1", "Notify/Qt/1", "", 0.4},
                          {"Notify/Corvane/1000", "Notify/sigc++/1000", "", 0.5}});
}
