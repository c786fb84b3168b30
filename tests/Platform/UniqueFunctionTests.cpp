#include <array>
#include <functional>

#include <gtest/gtest.h>

#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {
namespace {

/// Counts its living copies, whatever size and movability make of the way it is stored.
template <std::size_t Ballast, bool nothrowMove>
struct Tracked {
    explicit Tracked(int& living) : living_(&living) { ++*living_; }

    Tracked(Tracked&& other) noexcept(nothrowMove) : living_(other.living_), calls_(other.calls_) { ++*living_; }

    ~Tracked() { --*living_; }

    int operator()(int x) { return x + ++calls_; }

    int* living_;
    int calls_ = 0;
    std::array<std::byte, Ballast> ballast_{};
};

template <class Target>
class UniqueFunctionStorage : public testing::Test {};

using Targets = testing::Types<Tracked<8, true>, Tracked<8, false>, Tracked<200, true>>;
TYPED_TEST_SUITE(UniqueFunctionStorage, Targets);

TYPED_TEST(UniqueFunctionStorage, OwnsItsTargetThroughMovesAndEndsItOnce) {
    int living = 0;
    {
        UniqueFunction<int(int)> first = TypeParam(living);
        EXPECT_EQ(living, 1);
        EXPECT_EQ(first(10), 11);
        UniqueFunction<int(int)> second = std::move(first);
        EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(second(10), 12) << "the state moved along";
        EXPECT_EQ(living, 1);
        UniqueFunction<int(int)> third = TypeParam(living);
        third = std::move(second);
        EXPECT_EQ(living, 1) << "the assigned-over target has ended";
        EXPECT_EQ(third(10), 13);
        auto& same = third;
        third = std::move(same);
        EXPECT_EQ(third(10), 14);
        third = nullptr;
        EXPECT_EQ(living, 0);
        EXPECT_FALSE(third);
    }
    EXPECT_EQ(living, 0);
}

TEST(UniqueFunction, MovesTrivialTargetsAndTakesEmptyOnesAsEmpty) {
    int calls = 0;
    UniqueFunction<void()> first = [&calls] { ++calls; };
    UniqueFunction<void()> second = std::move(first);
    second();
    EXPECT_EQ(calls, 1);
    int (*none)() = nullptr;
    EXPECT_FALSE(UniqueFunction<int()>(none));
    EXPECT_FALSE(UniqueFunction<int()>());
    EXPECT_FALSE(UniqueFunction<int()>(std::function<int()>()));
    EXPECT_FALSE((UniqueFunction<int(), 64>(UniqueFunction<int()>())));
    EXPECT_TRUE(UniqueFunction<int()>([] { return 1; }));
}

}  // namespace
}  // namespace corvane
