#include <chrono>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/APIDataCache.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCache.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>

namespace corvane {

constexpr Date noon{std::chrono::seconds(1710504000)};

TEST(DataCache, NamesAFileAmongTheDocuments) {
    EXPECT_TRUE(DataCache::sharedInstance()->cacheFilePath().value_or("").ends_with("/cache-app-v4.json"));
    FileManager::setDocumentsDirectory("/nowhere/at/all");
    EXPECT_EQ(DataCache::make("cache.json")->cacheFilePath(), "/nowhere/at/all/cache.json");
    FileManager::setDocumentsDirectory("");
    EXPECT_EQ(DataCache::make("cache.json")->cacheFilePath(), std::nullopt);
    FileManager::setDocumentsDirectory(std::nullopt);
}

TEST(DataCache, ReplacesRecordsAndWritesThemAsJSON) {
    const auto cache = DataCache::make("cache.json");
    cache->store("a", {.data = Data("old"), .date = noon, .lastModified = "then"});
    const DataCacheRecord record{.data = Data("new"), .date = noon, .lastModified = std::nullopt};
    cache->store("a", record);
    EXPECT_EQ(cache->lookup("a"), record);
    EXPECT_EQ(cache->lookup("b"), std::nullopt);
    const auto json = JSONEncoder().encode(cache->cache());
    EXPECT_EQ(json->text(), R"({"a":{"data":"bmV3","date":1710504000.0}})");
    EXPECT_EQ(JSONDecoder().decode<DataCache::Records>(*json), cache->cache());
}

TEST(APIDataCache, StaysForeverWithATimeToLiveAndGoesAtOnceWithout) {
    const auto stamped = [](double seen) {
        return APIDataCache::stamped(Data("{}"), "then", SecondsSince1970(7), noon, noon + Date::duration(seen));
    };
    EXPECT_LT(stamped(1e-6).lastUpdate, 0) << "an interval, not a time";
    for (const double timeToLive : {30.0, 1e-4, 1e300, 0.0, -1.0, -1e300}) {
        EXPECT_EQ(stamped(0).survivesCleanup(timeToLive), timeToLive > 0) << timeToLive;
        EXPECT_EQ(stamped(1e-6).survivesCleanup(timeToLive), timeToLive > 0) << timeToLive;
    }
}

}  // namespace corvane
