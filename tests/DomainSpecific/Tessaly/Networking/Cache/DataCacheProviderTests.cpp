#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

class DataCacheProviderTest : public ::testing::Test {
  protected:
    void set(std::string key, std::string_view text = "{}") const {
        runBlocking(cache->set(Data(text), "then", SecondsSince1970(7), std::move(key)));
    }

    [[nodiscard]] bool has(std::optional<std::string> key) const {
        return runBlocking(cache->data(std::move(key))).has_value();
    }

    testing::VirtualClock clock;
    std::shared_ptr<DataCacheProvider> cache = DataCacheProvider::make(10, 0);
};

TEST_F(DataCacheProviderTest, KeepsTheLastBodyUnderEachKey) {
    set("");
    EXPECT_FALSE(has(std::nullopt)) << "an absent key is not the empty one";
    EXPECT_FALSE(has("a"));
    set("a");
    set("a", "new");
    EXPECT_EQ(runBlocking(cache->data("a")),
              APIDataCache::stamped(Data("new"), "then", SecondsSince1970(7), clock.now(), clock.now()));
    runBlocking(cache->purge());
    EXPECT_FALSE(has("a") || has(""));
}

TEST_F(DataCacheProviderTest, DropsInOnePassWhatDoesNotSurvive) {
    for (const double timeToLive : {30.0, 0.001, 0.0, -5.0}) {
        cache = DataCacheProvider::make(10, timeToLive);
        set("a");
        clock.advance(9);
        EXPECT_TRUE(has("a"));
        clock.advance(1);
        EXPECT_EQ(has("a"), timeToLive > 0) << timeToLive;
        set("a");
        clock.advance(100);
        EXPECT_TRUE(has("a")) << "one pass, no more";
    }
}

TEST_F(DataCacheProviderTest, StartsAPassAnewOnlyForAnotherInterval) {
    set("a");
    clock.advance(5);
    runBlocking(cache->startPeriodicalCleanup());
    clock.advance(5);
    EXPECT_TRUE(has("a")) << "the pending pass was replaced";
    clock.advance(5);
    EXPECT_FALSE(has("a"));

    set("a");
    runBlocking(cache->updateInterval(10, -1));
    clock.advance(100);
    EXPECT_TRUE(has("a")) << "the same interval starts nothing";
    runBlocking(cache->updateInterval(0, 0));
    clock.settle();
    EXPECT_FALSE(has("a"));
}

TEST_F(DataCacheProviderTest, IsHeldByItsOperationsButNotByAPendingPass) {
    const std::weak_ptr weak = cache;
    EXPECT_EQ(runBlocking(std::exchange(cache, nullptr)->data("a")), std::nullopt);
    clock.settle();
    EXPECT_TRUE(weak.expired());
    clock.advance(60);
}

}  // namespace corvane
