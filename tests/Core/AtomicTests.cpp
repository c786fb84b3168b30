#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Core/Atomic.hpp>

namespace corvane {

TEST(Atomic, ReadsWritesAndChangesItsValue) {
    Atomic<std::string> text("a");
    text.setWrappedValue("b");
    EXPECT_EQ(text += "c", "bc");
    EXPECT_EQ(text.mutate([](std::string& value) { return std::exchange(value, "d"); }), "bc");
    EXPECT_EQ(text.projectedValue().wrappedValue(), "d");

    Atomic<int> number(1);
    EXPECT_EQ(number -= 3, -2);
    EXPECT_THROW(number.mutate([](int&) { throw 1; }), int);
    EXPECT_EQ(++number, -1) << "the lock was released";
    static_assert(sizeof(number) == 2 * sizeof(int), "the lock is one word");
}

TEST(Atomic, MutateLosesNoChange) {
    constexpr int rounds = 20'000;
    Atomic<int> count(0);
    {
        std::vector<std::jthread> threads(8);
        for (auto& thread : threads) {
            thread = std::jthread([&] {
                for (int round = 0; round < rounds; ++round)
                    count.mutate([](int& value) { ++value; });
            });
        }
    }
    EXPECT_EQ(count.wrappedValue(), 8 * rounds);
}

// Another thread's write falls between the two locked sections, and is lost as documented.
TEST(Atomic, ModifyIsTwoLockedSections) {
    Atomic<int> count(0);
    count.modify([&](int& copy) {
        count.setWrappedValue(10);  // would deadlock under the lock
        ++copy;
    });
    EXPECT_EQ(count.wrappedValue(), 1);
}

}  // namespace corvane
