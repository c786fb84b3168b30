#include <memory>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/HostSlots.hpp>

namespace corvane::http {
namespace {

using Entry = std::shared_ptr<int>;

Entry entry(int number) {
    return std::make_shared<int>(number);
}

int numberOf(const Entry& of) {
    return of ? *of : 0;
}

TEST(HostSlots, AdmitByPriorityThenByOrder) {
    HostSlots<Entry> slots(1);
    EXPECT_TRUE(slots.acquire("a", 0.5F, entry(1)));
    EXPECT_TRUE(slots.acquire("b", 0.5F, entry(2)));
    for (const auto& [priority, number] : {std::pair{0.5F, 3}, {0.25F, 4}, {0.75F, 5}, {0.5F, 6}, {0.75F, 7}}) {
        EXPECT_FALSE(slots.acquire("a", priority, entry(number)));
    }
    for (const int number : {5, 7, 3, 6, 4, 0})
        EXPECT_EQ(numberOf(slots.release("a")), number);
    EXPECT_EQ(numberOf(slots.release("b")), 0);
    EXPECT_TRUE(slots.acquire("a", 0, entry(8)));
}

TEST(HostSlots, RaiseTheLimitOfMultiplexedOrigins) {
    HostSlots<Entry> slots(1);
    EXPECT_TRUE(slots.acquire("a", 0.5F, entry(1)));
    for (int number = 2; number <= 102; ++number)
        EXPECT_FALSE(slots.acquire("a", 0.5F, entry(number)));
    EXPECT_EQ(slots.setMultiplexed("a", true).size(), 99U);
    EXPECT_TRUE(slots.setMultiplexed("a", true).empty());
    for (const int number : {101, 102, 0, 0})
        EXPECT_EQ(numberOf(slots.release("a")), number);
    for (int number = 0; number < 98; ++number)
        EXPECT_EQ(slots.release("a"), nullptr);
    // The origin is remembered, until it answers otherwise.
    EXPECT_TRUE(slots.acquire("a", 0.5F, entry(1)));
    EXPECT_TRUE(slots.acquire("a", 0.5F, entry(2)));
    EXPECT_TRUE(slots.setMultiplexed("a", false).empty());
    EXPECT_FALSE(slots.acquire("a", 0.5F, entry(3)));
    EXPECT_EQ(slots.release("a"), nullptr) << "there is one more than the limit";
    EXPECT_EQ(numberOf(slots.release("a")), 3);
}

}  // namespace
}  // namespace corvane::http
