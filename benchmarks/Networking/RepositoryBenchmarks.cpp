// What a repository adds to a fetch: an answer from its cache, and one more request that waits for a fetch under way.
// Beside them the hop to a queue of the repository's class, which each of them begins with.

#include <atomic>
#include <memory>
#include <optional>

#include <benchmark/benchmark.h>

#include <Corvane/Networking/API/APIRepository.hpp>

#include "benchmarks/Goals.hpp"

namespace {

using namespace corvane;

constexpr int batch = 10'000;

/// Loads when it is told to.
class Gate {
  public:
    using Model = int;

    struct FetchResult {
        int model;
    };

    [[nodiscard]] static std::optional<URL> url() { return std::nullopt; }

    Task<std::expected<FetchResult, AnyError>> loadData() {
        co_await withContinuation<void>([this](Continuation<void> continuation) {
            load_ = std::move(continuation);
            isLoading_.test_and_set();
            isLoading_.notify_one();
        });
        co_return FetchResult{.model = 1};
    }

    void open() {
        isLoading_.wait(false);
        isLoading_.clear();
        std::exchange(load_, std::nullopt)->resume();
    }

  private:
    std::optional<Continuation<void>> load_;
    std::atomic_flag isLoading_;
};

class Countdown {
  public:
    void count() {
        if (--left_ == 0) left_.notify_one();
    }

    void wait() {
        for (int left = left_; left > 0; left = left_)
            left_.wait(left);
        left_ = batch;
    }

  private:
    std::atomic<int> left_ = batch;
};

void reportEach(benchmark::State& state) {
    using benchmark::Counter;
    state.counters["per_answer"] = Counter(batch, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void ask(const APIRepository<int, Gate>& repository, bool useCache, Countdown& answers) {
    repository.fetchData(useCache, [&answers](const auto&, const auto&) { answers.count(); });
}

void answerFromCache(benchmark::State& state) {
    const auto gate = std::make_shared<Gate>();
    const APIRepository<int, Gate> repository(gate, 3600, 0);
    Countdown answers;
    for (int i = 0; i < batch; ++i)
        ask(repository, false, answers);
    repository.accessQueue()->sync([] {});
    gate->open();
    answers.wait();
    for (auto iteration : state) {
        for (int i = 0; i < batch; ++i)
            ask(repository, true, answers);
        answers.wait();
    }
    reportEach(state);
}

void answerTogether(benchmark::State& state) {
    const auto gate = std::make_shared<Gate>();
    Countdown answers;
    for (auto iteration : state) {
        // A new one each time: one that is just giving its last answers would give more of them.
        const APIRepository<int, Gate> repository(gate, 3600, 0);
        for (int i = 0; i < batch; ++i)
            ask(repository, false, answers);
        repository.accessQueue()->sync([] {});
        gate->open();
        answers.wait();
    }
    reportEach(state);
}

void hop(benchmark::State& state) {
    const auto queue = DispatchQueue::serial("hop", {.qosClass = QoSClass::background});
    Countdown answers;
    for (auto iteration : state) {
        for (int i = 0; i < batch; ++i)
            queue->async([&answers] { answers.count(); });
        answers.wait();
    }
    reportEach(state);
}

BENCHMARK(hop)->Name("repository/hop")->UseRealTime();
BENCHMARK(answerFromCache)->Name("repository/cached")->UseRealTime();
BENCHMARK(answerTogether)->Name("repository/coalesced")->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv,
                         {{"repository/cached/real_time", "repository/hop/real_time", "per_answer", 6},
                          {"repository/coalesced/real_time", "repository/hop/real_time", "per_answer", 6}});
}
