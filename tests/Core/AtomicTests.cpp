#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Core/Atomic.hpp>

namespace corvane {

namespace {

void onThreads(int count, auto body) {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < count; ++thread)
        threads.emplace_back(body);
}

}  // namespace

TEST(Atomic, ReadsWritesAndChangesItsValue) {
    Atomic<std::string> text("a");
    text.setWrappedValue("b");
    EXPECT_EQ(text.wrappedValue(), "b");
    EXPECT_EQ(text += "c", "bc");
    EXPECT_EQ(text.mutate([](std::string& value) { return std::exchange(value, "d"); }), "bc");
    EXPECT_EQ(text.projectedValue().wrappedValue(), "d");

    Atomic<int> number(1);
    EXPECT_EQ(++number, 2);
    EXPECT_EQ(--number, 1);
    EXPECT_EQ(number -= 3, -2);
    static_assert(sizeof(number) == 2 * sizeof(int), "the lock is one word");
}

TEST(Atomic, MutateLosesNoChange) {
    constexpr int threads = 8;
    constexpr int rounds = 20'000;
    Atomic<int> count(0);
    onThreads(threads, [&] {
        for (int round = 0; round < rounds; ++round)
            count.mutate([](int& value) { ++value; });
    });
    EXPECT_EQ(count.wrappedValue(), threads * rounds);
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

TEST(Atomic, EndsTheFormerValueOutsideTheLock) {
    struct Reader {
        Atomic<std::vector<Reader>>* atomic = nullptr;
        std::size_t* seen = nullptr;

        Reader(Atomic<std::vector<Reader>>* a, std::size_t* s) : atomic(a), seen(s) {}

        Reader(const Reader&) = default;
        Reader& operator=(const Reader&) = default;

        ~Reader() {
            if (atomic != nullptr) *seen = std::exchange(atomic, nullptr)->mutate([](auto& v) { return v.size(); });
        }
    };

    std::size_t seen = 99;
    Atomic<std::vector<Reader>> readers({});
    readers.mutate([&](auto& value) { value.emplace_back(&readers, &seen); });
    readers.setWrappedValue({});
    EXPECT_EQ(seen, 0U);
}

TEST(Atomic, ReleasesTheLockWhenTheBodyThrows) {
    Atomic<int> count(0);
    EXPECT_THROW(count.mutate([](int&) { throw 1; }), int);
    EXPECT_EQ(++count, 1);
}

}  // namespace corvane
