#include <random>
#include <thread>

#include "SessionFixture.hpp"

namespace corvane {
namespace {

constexpr int faultCount = static_cast<int>(LoopbackFault::neverAnswer) + 1;

using Soak = SessionTest;

TEST_F(Soak, EveryTaskCompletesOnceWhateverHappensToItAndItsSession) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    for (int fault = 0; fault < faultCount; ++fault) {
        server.route("GET", '/' + std::to_string(fault),
                     LoopbackResponse{.body = std::string(30'000, 'x')}.with(static_cast<LoopbackFault>(fault)));
    }
    const std::string unanswered = '/' + std::to_string(faultCount - 1);
    constexpr std::size_t threadCount = 4;
    constexpr std::size_t tasksOfEach = 100;
    expected = threadCount * tasksOfEach;
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(seed + static_cast<unsigned>(number));
            const auto chance = [&random](unsigned oneIn) { return random() % oneIn == 0; };
            std::vector<std::shared_ptr<URLSessionDataTask>> tasks;
            std::shared_ptr<URLSession> own;
            for (std::size_t i = 0; i < tasksOfEach; ++i) {
                // Sessions end in every way there is, just let go included.
                if (own && chance(6)) own->invalidateAndCancel();
                if (own && chance(6)) own->finishTasksAndInvalidate();
                if (!own || chance(4)) own = URLSession::make(URLSessionConfiguration::defaultConfiguration());
                const auto& with = chance(2) ? own : session;
                tasks.push_back(
                    with->dataTask(request('/' + std::to_string(random() % faultCount)), completions.handler()));
                tasks.back()->resume();
                if (chance(4)) tasks.back()->suspend();
                if (chance(4)) tasks.back()->cancel();
                if (chance(3)) tasks[random() % tasks.size()]->cancel();
                if (chance(20)) server.closeIdleConnections();
            }
            for (const auto& task : tasks) {
                task->resume();
                if (task->originalRequest().url().path() == unanswered) task->cancel();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    waitForAll();
    for (const Completion& completion : completions.all()) {
        EXPECT_EQ(completion.data.has_value(), !completion.error.has_value());
        EXPECT_NE(completion.code(), -1) << completion.error->description();
        if (completion.data) {
            EXPECT_EQ(completion.data->size(), 30'000U);
        }
    }
    server.closeIdleConnections();
    EXPECT_EQ(load(request("/0")).status(), 200);
}

}  // namespace
}  // namespace corvane
