#include <algorithm>
#include <functional>
#include <iostream>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/Networking/API/APIRepository.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

/// Loads numbers, each one higher than the one before, after a while on the clock.
struct Counter {
    using Model = int;

    struct FetchResult {
        int model;
    };

    [[nodiscard]] static std::optional<URL> url() { return URL::parse("http://localhost/counter"); }

    Task<std::expected<FetchResult, AnyError>> loadData() {
        const int count = ++loads;
        static_cast<void>(co_await Task<>::sleep(seconds));
        if (fails) co_return std::unexpected(AnyError(ClientAPIError::timeout()));
        co_return FetchResult{.model = count};
    }

    std::atomic<double> seconds = 0;
    std::atomic<int> loads = 0;
    std::atomic<bool> fails = false;
};

using Repository = APIRepository<int, Counter>;

TEST(APIRepository, AnswersTenThousandRequestsWithOneFetchTheLatestFirstEvenWhenItIsGone) {
    testing::VirtualClock clock;
    const auto counter = std::make_shared<Counter>();
    counter->seconds = 1;
    std::vector<int> order;
    {
        const APIRepository repository(counter, 60, 60);
        for (int i = 0; i < 10'000; ++i) {
            repository.fetchData(i % 2 == 0, [&order, i](const auto& result, const auto& metadata) {
                EXPECT_TRUE(**result == 1 && metadata.cachedDataRequested && !Thread::isMainThread());
                order.push_back(i);
            });
        }
        clock.settle();
    }
    clock.advance(1);
    EXPECT_EQ(order.size(), 10'000U);
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
    constexpr std::size_t perThread = 400;
    testing::VirtualClock clock;
    std::vector<std::atomic<int>> answers(threadCount * perThread);
    const auto counter = std::make_shared<Counter>();
    const auto make = [&] { return std::make_shared<Repository>(counter, 60, 0); };
    Atomic<std::shared_ptr<Repository>> shared(make());

    const auto act = [&](std::size_t thread) {
        std::minstd_rand random(seed + static_cast<unsigned>(thread));
        for (std::size_t i = 0; i < perThread; ++i) {
            const auto repository = shared.wrappedValue();
            const unsigned choice = random() % 16;
            if (choice == 0) shared.setWrappedValue(make());
            if (choice == 1) repository->update(counter, random() % 2 == 0, nullptr);
            if (choice == 2) counter->fails = !counter->fails;
            if (choice == 3) counter->seconds = random() % 2 == 0 ? 1 : 0;
            auto& count = answers[thread * perThread + i];
            repository->fetchData(random() % 2 == 0, [&count](const auto&, const auto&) { ++count; });
        }
    };
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < threadCount; ++thread)
            threads.emplace_back(act, thread);
        for (int i = 0; i < 100; ++i)
            clock.advance(0.1);
    }
    shared.setWrappedValue(nullptr);
    clock.advance(2);
    EXPECT_TRUE(std::ranges::all_of(answers, [](int count) { return count == 1; }));
}

}  // namespace
}  // namespace corvane
