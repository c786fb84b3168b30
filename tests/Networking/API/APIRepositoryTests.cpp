#include <algorithm>
#include <atomic>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Networking/API/APIRepository.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>

namespace corvane {
namespace {

/// Loads numbers, each one higher than the one before; while it is shut, loads wait.
class Counter {
  public:
    using Model = int;

    struct FetchResult {
        int model;
    };

    [[nodiscard]] static std::optional<URL> url() { return URL::parse("http://localhost/counter"); }

    Task<std::expected<FetchResult, AnyError>> loadData() {
        const int count = ++loads;
        co_await withContinuation<void>([this](Continuation<void> continuation) {
            const std::lock_guard guard(lock_);
            isShut_ ? waiting_.push_back(std::move(continuation)) : continuation.resume();
        });
        if (fails) co_return std::unexpected(AnyError(ClientAPIError::timeout()));
        co_return FetchResult{.model = count};
    }

    void shut() {
        const std::lock_guard guard(lock_);
        isShut_ = true;
    }

    void open() {
        const std::lock_guard guard(lock_);
        isShut_ = false;
        for (const auto& continuation : std::exchange(waiting_, {}))
            continuation.resume();
    }

    std::atomic<int> loads = 0;
    std::atomic<bool> fails = false;

  private:
    std::mutex lock_;
    bool isShut_ = false;
    std::vector<Continuation<void>> waiting_;
};

using Repository = APIRepository<int, Counter>;

/// Counts answers. Shared with the callbacks, as the last of them may still be at it when a test has seen its count.
struct Answers {
    void count() {
        ++number;
        number.notify_one();
    }

    void wait(int total) const {
        for (int seen = number; seen < total; seen = number)
            number.wait(seen);
    }

    std::atomic<int> number = 0;
};

TEST(APIRepository, AnswersTenThousandRequestsWithOneFetchTheLatestFirstEvenWhenItIsGone) {
    const auto counter = std::make_shared<Counter>();
    const auto answers = std::make_shared<Answers>();
    counter->shut();
    std::vector<int> order;
    {
        const APIRepository repository(counter, 60, 60);
        for (int i = 0; i < 10'000; ++i) {
            repository.fetchData(i % 2 == 0, [&order, answers, i](const auto& result, const auto& metadata) {
                EXPECT_TRUE(**result == 1 && metadata.cachedDataRequested && !Thread::isMainThread());
                order.push_back(i);
                answers->count();
            });
        }
        repository.accessQueue()->sync([] {});
    }
    counter->open();
    answers->wait(10'000);
    EXPECT_EQ(counter->loads, 1);
    EXPECT_TRUE(std::ranges::is_sorted(order, std::greater()));
}

TEST(APIRepository, ReplacesItsAPIAndFlushesOnlyWhenAsked) {
    const auto first = std::make_shared<Counter>();
    const auto second = std::make_shared<Counter>();
    const APIRepository repository(first, 60, 0);
    EXPECT_EQ(repository.url(), Counter::url());
    EXPECT_EQ(*runBlocking(repository.fetchData(true)).value().model, 1);

    runBlocking(repository.update(second, false));
    EXPECT_EQ(repository.api(), second);
    EXPECT_TRUE(runBlocking(repository.fetchData(true)).value().metadata.cachedDataReturned);
    bool isOnQueue = false;
    repository.update(second, true, [&] { isOnQueue = repository.accessQueue()->isCurrent(); });
    second->fails = true;
    const auto answer = runBlocking(repository.fetchData(true));
    EXPECT_TRUE(isOnQueue);
    EXPECT_EQ(answer.error(), APIRepositoryError::apiClient(ClientAPIError::timeout(), {.cachedDataRequested = true}));
    EXPECT_EQ(first->loads + second->loads, 2);
}

TEST(APIRepository, AnswersEveryRequestOnceWhateverHappensMeanwhile) {
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << '\n';
    constexpr std::size_t threadCount = 4;
    constexpr int perThread = 400;
    const auto answers = std::make_shared<Answers>();
    std::vector<std::atomic<int>> answered(threadCount * perThread);
    std::atomic<int> asked = 0;
    const auto counter = std::make_shared<Counter>();
    std::mutex lock;
    auto shared = std::make_shared<Repository>(counter, 60, 0);

    const auto act = [&](std::size_t thread) {
        std::minstd_rand random(seed + static_cast<unsigned>(thread));
        for (int i = 0; i < perThread; ++i) {
            std::unique_lock guard(lock);
            const auto repository = shared;
            const unsigned choice = random() % 16;
            if (choice == 0) shared = std::make_shared<Repository>(counter, 60, 0);
            guard.unlock();
            if (choice == 1) repository->update(counter, random() % 2 == 0, nullptr);
            if (choice == 2) counter->fails = !counter->fails;
            if (choice == 3) counter->shut();
            if (choice == 4) counter->open();
            if (choice < 5) continue;
            auto& mine = answered[thread * perThread + static_cast<std::size_t>(i)];
            ++asked;
            repository->fetchData(random() % 2 == 0, [answers, &mine](const auto&, const auto&) {
                ++mine;
                answers->count();
            });
        }
    };
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < threadCount; ++thread)
            threads.emplace_back(act, thread);
    }
    shared = nullptr;
    counter->open();
    answers->wait(asked);
    EXPECT_EQ(std::ranges::count_if(answered, [](const auto& count) { return count > 1; }), 0);
    EXPECT_EQ(std::ranges::count_if(answered, [](const auto& count) { return count == 1; }), asked);
}

}  // namespace
}  // namespace corvane
