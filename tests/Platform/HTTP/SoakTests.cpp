#include <random>
#include <thread>

#include "FaultFixture.hpp"

namespace corvane {
namespace {

constexpr int faultCount = static_cast<int>(LoopbackFault::neverAnswer) + 1;

using Soak = FaultTest;

TEST_F(Soak, EveryTaskCompletesOnceWhateverHappensToIt) {
    const unsigned seed = std::random_device{}();
    RecordProperty("seed", std::to_string(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    for (int fault = 0; fault < faultCount; ++fault) {
        server.route("GET", '/' + std::to_string(fault),
                     LoopbackResponse{.body = std::string(30'000, 'x')}.with(static_cast<LoopbackFault>(fault)));
    }
    const std::string unanswered = '/' + std::to_string(faultCount - 1);
    constexpr std::size_t threadCount = 4;
    constexpr std::size_t tasksOfEach = 100;
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(seed + static_cast<unsigned>(number));
            const auto chance = [&random](unsigned oneIn) { return random() % oneIn == 0; };
            std::vector<std::shared_ptr<URLSessionDataTask>> tasks;
            for (std::size_t i = 0; i < tasksOfEach; ++i) {
                const auto task =
                    session->dataTask(request('/' + std::to_string(random() % faultCount)), completions.handler());
                task->resume();
                if (chance(4)) task->suspend();
                if (chance(4)) task->cancel();
                if (chance(3) && !tasks.empty()) tasks[random() % tasks.size()]->cancel();
                if (chance(20)) server.closeIdleConnections();
                tasks.push_back(task);
            }
            // Those that nobody would answer, among them.
            for (const auto& task : tasks) {
                task->resume();
                if (task->originalRequest().url().path() == unanswered) task->cancel();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < threadCount * tasksOfEach; ++i)
        expectOneMore();
    waitForAll();
    for (const Completion& completion : completions.all()) {
        EXPECT_EQ(completion.data.has_value(), !completion.error.has_value());
        EXPECT_NE(completion.code(), -1) << completion.error->description();
        if (completion.data) {
            EXPECT_EQ(completion.data->size(), 30'000U);
        }
    }
    server.closeIdleConnections();
    const Completion last = loadOne(request("/0"));
    EXPECT_EQ(last.status(), 200) << (last.error ? last.error->description() : "");
}

TEST_F(Soak, SessionsEndInWhateverOrder) {
    const unsigned seed = std::random_device{}();
    RecordProperty("seed", std::to_string(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    server.route("GET", "/", LoopbackResponse::json("sound"));
    std::mt19937 random(seed);
    Completions others;
    std::size_t started = 0;
    for (int round = 0; round < 60; ++round) {
        auto shortLived = URLSession::make(URLSessionConfiguration::defaultConfiguration());
        for (int i = 0; i < 5; ++i, ++started)
            shortLived->dataTask(request("/"), others.handler())->resume();
        switch (random() % 4) {
            case 0:
                shortLived->invalidateAndCancel();
                break;
            case 1:
                shortLived->finishTasksAndInvalidate();
                break;
            case 2:
                std::thread([last = std::move(shortLived)] {}).join();
                break;
            default:
                break;
        }
    }
    static_cast<void>(others.wait(started));
    EXPECT_EQ(others.all().size(), started);
    EXPECT_EQ(loadOne(request("/")).body(), "sound");
}

}  // namespace
}  // namespace corvane
