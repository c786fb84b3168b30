#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;

class TimerTest : public ::testing::Test {
  protected:
    double elapsed() const { return std::chrono::duration<double>(clock_.uptime() - start_).count(); }

    /// Notes the time of each firing.
    Timer::Block note() {
        return [this](Timer&) { fired_.push_back(elapsed()); };
    }

    testing::VirtualClock clock_;
    const SteadyInstant start_ = clock_.uptime();
    std::vector<double> fired_;
};

TEST_F(TimerTest, OneShotFiresOnceAndTurnsInvalidAfterItsBlock) {
    const auto token = std::make_shared<int>();
    const auto timer = Timer::scheduled(2, false, [&, token](Timer& self) {
        EXPECT_TRUE(self.isValid());
        fired_.push_back(elapsed());
    });
    EXPECT_EQ(timer->interval(), 0);
    clock_.advance(1.999);
    EXPECT_TRUE(fired_.empty());
    clock_.advance(10);
    EXPECT_THAT(fired_, ElementsAre(2));
    EXPECT_FALSE(timer->isValid());
    EXPECT_EQ(token.use_count(), 1);
    timer->restart(1);
    clock_.advance(10);
    EXPECT_THAT(fired_, ElementsAre(2));
}

TEST_F(TimerTest, RepeatingKeepsItsPhaseAndSkipsMissedBeats) {
    const auto timer = Timer::scheduled(1, true, [&](Timer&) {
        fired_.push_back(elapsed());
        // As if the block had taken two and a half beats.
        if (fired_.size() == 2) clock_.advance(2.5);
    });
    EXPECT_EQ(timer->interval(), 1);
    clock_.advance(2);
    clock_.advance(1.5);
    EXPECT_THAT(fired_, ElementsAre(1, 2, 5, 6));
    timer->invalidate();
    clock_.advance(5);
    EXPECT_EQ(fired_.size(), 4U);
}

TEST_F(TimerTest, OddIntervals) {
    for (const double interval : {0.0, -1.0, std::nan(""), -std::numeric_limits<double>::infinity()}) {
        fired_.clear();
        const double start = elapsed();
        const auto timer = Timer::scheduled(interval, false, note());
        clock_.settle();
        EXPECT_TRUE(fired_.empty());
        clock_.advance(0.0001);
        EXPECT_THAT(fired_, ElementsAre(DoubleNear(start + 0.0001, 1e-9)));
    }
    const auto never = Timer::scheduled(std::numeric_limits<double>::infinity(), true, note());
    const auto hardlyEver = Timer::scheduled(1e300, false, note());
    fired_.clear();
    clock_.advance(1e8);
    EXPECT_TRUE(fired_.empty());
    EXPECT_TRUE(never->isValid());
    never->restart(1);
    hardlyEver->restart(2);
    const double start = elapsed();
    clock_.advance(3);
    EXPECT_THAT(fired_, ElementsAre(start + 1, start + 2));
    EXPECT_TRUE(never->isValid());
    never->invalidate();
}

TEST_F(TimerTest, AOneShotThatRestartsItselfInItsBlockStaysValid) {
    const auto timer = Timer::scheduled(1, false, [&](Timer& self) {
        fired_.push_back(elapsed());
        if (fired_.size() < 3) self.restart(2);
    });
    clock_.advance(1);
    EXPECT_TRUE(timer->isValid());
    clock_.advance(10);
    EXPECT_THAT(fired_, ElementsAre(1, 3, 5));
    EXPECT_FALSE(timer->isValid());
}

TEST_F(TimerTest, InvalidatedOrDroppedInItsOwnBlock) {
    const auto token = std::make_shared<int>();
    std::weak_ptr<Timer> dropped;
    auto owner = std::make_shared<std::shared_ptr<Timer>>();
    *owner = Timer::scheduled(1, true, [&, owner, token](Timer& self) {
        self.invalidate();
        EXPECT_FALSE(self.isValid());
        EXPECT_GT(token.use_count(), 1) << "the captures live while the block runs";
        owner->reset();
        self.restart(1);
        fired_.push_back(elapsed());
    });
    dropped = *owner;
    clock_.advance(5);
    EXPECT_THAT(fired_, ElementsAre(1));
    EXPECT_TRUE(dropped.expired());
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(owner.use_count(), 1);
}

TEST_F(TimerTest, ABlockThatPumpsDoesNotReenterItsTimer) {
    int depth = 0;
    const auto timer = Timer::scheduled(1, true, [&](Timer&) {
        EXPECT_EQ(++depth, 1);
        clock_.advance(3);
        --depth;
        fired_.push_back(elapsed());
    });
    clock_.advance(1);
    timer->invalidate();
    EXPECT_THAT(fired_, ElementsAre(4));
}

TEST_F(TimerTest, ManyFireWhenAndInTheOrderInWhichAListWouldHaveThem) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto draw = [&random](std::size_t below) { return static_cast<unsigned>(random() % below); };
    std::vector<std::shared_ptr<Timer>> timers;
    std::vector<unsigned> periods;
    std::set<std::pair<unsigned, std::size_t>> armed;  // when, in milliseconds, and which
    std::vector<std::size_t> fired, expected;
    unsigned now = 0;
    const auto token = std::make_shared<int>();
    for (int step = 0; step < 5000; ++step) {
        const unsigned delay = 1 + draw(20);
        auto any = armed.begin();
        if (!armed.empty()) std::advance(any, draw(armed.size()));
        if (const unsigned choice = draw(6); choice < 2 || armed.empty()) {
            const std::size_t number = timers.size();
            const bool repeats = draw(4) == 0;
            const auto block = [&, number, token](Timer&) { fired.push_back(number); };
            timers.push_back(Timer::scheduled(delay * 0.001, repeats, block));
            periods.push_back(repeats ? delay : 0);
            armed.emplace(now + delay, number);
        } else if (choice < 4) {
            // Also the phase of one that repeats.
            timers[any->second]->restart(delay * 0.001);
            armed.emplace(now + delay, armed.extract(any).value().second);
        } else if (choice == 4) {
            timers[armed.extract(any).value().second]->invalidate();
        } else {
            clock_.advance(0.005);
            for (now += 5; !armed.empty() && armed.begin()->first <= now;) {
                const auto [when, number] = armed.extract(armed.begin()).value();
                expected.push_back(number);
                if (periods[number] > 0) armed.emplace(when + periods[number], number);
            }
            ASSERT_EQ(fired, expected);
        }
    }
    EXPECT_GT(fired.size(), 100U);
    for (const auto& timer : timers)
        timer->invalidate();
    EXPECT_EQ(token.use_count(), 1) << "captures go at once";
}

TEST_F(TimerTest, MayBeMovedAndEndedFromOtherThreads) {
    std::vector<std::shared_ptr<Timer>> timers;
    for (int count = 0; count < 50; ++count)
        timers.push_back(Timer::scheduled(0.001, true, [](Timer&) {}));
    std::vector<std::thread> threads;
    for (unsigned number = 0; number < 2; ++number) {
        threads.emplace_back([&, number] {
            for (unsigned round = 0; round < 200; ++round) {
                for (const auto& timer : timers)
                    timer->restart(0.0001 * ((round + number) % 7));
            }
            for (std::size_t index = number; index < timers.size(); index += 2)
                timers[index]->invalidate();
        });
    }
    for (int count = 0; count < 100; ++count)
        clock_.advance(0.0003);
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& timer : timers)
        EXPECT_FALSE(timer->isValid());
    timers.clear();
}

}  // namespace
}  // namespace corvane
