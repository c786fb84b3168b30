#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dispatch/Private/DeadlineHeap.hpp>

namespace corvane {
namespace {

struct Entry final : Deadline {
    explicit Entry(int entryNumber) : number(entryNumber) {}

    const int number;
};

SteadyInstant at(std::int64_t time) {
    return SteadyInstant(std::chrono::nanoseconds(time));
}

/// A heap beside a plain list that says what the heap must do.
class HeapAndOracle {
  public:
    explicit HeapAndOracle(unsigned seed) : random_(seed) {}

    void step() {
        switch (pick(0, 5)) {
            case 0:
            case 1:
                arm();
                break;
            case 2:
            case 3:
                move();
                break;
            case 4:
                remove();
                break;
            default:
                advance();
        }
        SteadyInstant earliest = SteadyInstant::max();
        for (const Expected& expected : armed_)
            earliest = std::min(earliest, at(expected.time));
        ASSERT_EQ(heap_.next(), earliest);
        ASSERT_EQ(heap_.size(), armed_.size());
    }

  private:
    struct Expected {
        std::int64_t time;
        std::shared_ptr<Entry> entry;
    };

    std::int64_t pick(std::int64_t least, std::int64_t most) {
        return std::uniform_int_distribution<std::int64_t>(least, most)(random_);
    }

    Expected* any() {
        return armed_.empty() ? nullptr : &armed_[static_cast<std::size_t>(pick(1, std::ssize(armed_)) - 1)];
    }

    void arm() {
        auto entry = std::make_shared<Entry>(made_++);
        const std::int64_t time = now_ + pick(0, 20);
        static_cast<void>(entry->moveTo(at(time)));
        heap_.arm(entry);
        armed_.push_back({time, entry});
    }

    void move() {
        Expected* const expected = any();
        if (expected == nullptr) return;
        expected->time = now_ + pick(0, 20);
        if (expected->entry->moveTo(at(expected->time))) heap_.hasten(*expected->entry);
    }

    void remove() {
        Expected* const expected = any();
        if (expected == nullptr) return;
        ASSERT_EQ(heap_.remove(*expected->entry), expected->entry);
        ASSERT_EQ(heap_.remove(*expected->entry), nullptr);
        armed_.erase(armed_.begin() + (expected - armed_.data()));
    }

    void advance() {
        now_ += pick(0, 10);
        std::ranges::sort(armed_, [](const Expected& a, const Expected& b) {
            return std::pair(a.time, a.entry->number) < std::pair(b.time, b.entry->number);
        });
        while (!armed_.empty() && armed_.front().time <= now_) {
            const std::shared_ptr<Entry> entry = heap_.takeDue(at(now_));
            ASSERT_EQ(entry, armed_.front().entry);
            ASSERT_EQ(entry->due(), at(armed_.front().time));
            armed_.erase(armed_.begin());
        }
        ASSERT_EQ(heap_.takeDue(at(now_)), nullptr);
    }

    std::mt19937 random_;
    DeadlineHeap<Entry> heap_;
    std::vector<Expected> armed_;
    std::int64_t now_ = 0;
    int made_ = 0;
};

TEST(DeadlineHeap, GivesWhatAPlainListWouldGive) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    HeapAndOracle pair(seed);
    for (int count = 0; count < 20'000 && !HasFatalFailure(); ++count)
        pair.step();
}

}  // namespace
}  // namespace corvane
