#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

class DataCacheProviderTest : public ::testing::Test {
  protected:
    void make(double cleanupInterval, double timeToLive) {
        cache = DataCacheProvider::make(cleanupInterval, timeToLive);
        set("a");
    }

    void set(std::string key, std::string_view text = "{}") const {
        runBlocking(cache->set(Data(text), "then", SecondsSince1970(7), std::move(key)));
    }

    [[nodiscard]] bool has(std::optional<std::string> key) const {
        return runBlocking(cache->data(std::move(key))).has_value();
    }

    testing::VirtualClock clock;
    std::shared_ptr<DataCacheProvider> cache;
};

TEST_F(DataCacheProviderTest, KeepsTheLastBodyUnderEachKey) {
    make(60, 300);
    set("");
    EXPECT_FALSE(has(std::nullopt)) << "an absent key is not the empty one";
    EXPECT_TRUE(has(""));
    EXPECT_FALSE(has("b"));
    clock.advance(1000);
    set("a", "new");
    const auto entry = runBlocking(cache->data("a"));
    EXPECT_EQ(entry, APIDataCache::stamped(Data("new"), "then", SecondsSince1970(7), clock.now(), clock.now()));

    runBlocking(cache->purge());
    EXPECT_FALSE(has("a") || has(""));
}

TEST_F(DataCacheProviderTest, DropsInOnePassWhatDoesNotSurvive) {
    const struct {
        double interval, timeToLive;
        bool survives;
    } rows[] = {{10, 30, true}, {10, 0.001, true}, {10, 0, false}, {10, -5, false}, {0, 0, false}};

    for (const auto& [interval, timeToLive, survives] : rows) {
        SCOPED_TRACE(::testing::Message() << interval << ' ' << timeToLive);
        cache = DataCacheProvider::make(interval, timeToLive);
        // Known to stand before the pass, which may come at once.
        if (interval > 0) set("a");
        clock.advance(interval - 1);
        EXPECT_EQ(has("a"), interval > 0);
        clock.advance(1);
        EXPECT_EQ(has("a"), survives);
        set("b");
        clock.advance(100);
        EXPECT_TRUE(has("b")) << "one pass, no more";
    }
}

TEST_F(DataCacheProviderTest, StartsAPassAnewOnlyForAnotherInterval) {
    make(10, 0);
    clock.advance(5);
    runBlocking(cache->startPeriodicalCleanup());
    clock.advance(5);
    EXPECT_TRUE(has("a")) << "the pending pass was replaced";
    clock.advance(5);
    EXPECT_FALSE(has("a"));

    set("a");
    runBlocking(cache->updateInterval(10, 30));
    clock.advance(100);
    runBlocking(cache->updateInterval(10, -1));
    clock.advance(100);
    EXPECT_TRUE(has("a")) << "the same interval starts nothing";
    runBlocking(cache->updateInterval(20, 30));
    clock.advance(20);
    EXPECT_TRUE(has("a"));
    runBlocking(cache->updateInterval(0, 0));
    clock.settle();
    EXPECT_FALSE(has("a"));
}

TEST_F(DataCacheProviderTest, IsHeldByItsOperationsButNotByAPendingPass) {
    make(10, 0);
    const std::weak_ptr<DataCacheProvider> weak = cache;
    const auto read = spawn(std::exchange(cache, nullptr)->data("a"));
    EXPECT_TRUE(runBlocking(read.value()).has_value());
    clock.settle();
    EXPECT_TRUE(weak.expired());
    clock.advance(60);
}

TEST_F(DataCacheProviderTest, ServesManyAtOnce) {
    make(60, 300);
    std::vector<TaskHandle<>> handles;
    for (int i = 0; i < 200; ++i) {
        handles.push_back(spawn(cache->set(Data("x"), std::nullopt, SecondsSince1970(1), std::to_string(i % 20))));
        if (i % 50 == 0) handles.push_back(spawn(cache->startPeriodicalCleanup()));
    }
    for (const auto& handle : handles)
        runBlocking(handle.value());
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(has(std::to_string(i)));
}

TEST(DataCacheProviderDeathTest, StopsForAnImpossibleInterval) {
    for (const double interval : {-1.0, -1e-8, 1e11, std::numeric_limits<double>::quiet_NaN()}) {
        const auto runPass = [&] {
            testing::VirtualClock clock;
            const auto cache = DataCacheProvider::make(interval, 1);
            clock.settle();
        };
        EXPECT_DEATH(runPass(), "Fatal error") << interval;
    }
}

}  // namespace
}  // namespace corvane
