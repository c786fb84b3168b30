#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/APIDataCache.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCache.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>

namespace corvane {
namespace {

const Date noon{std::chrono::seconds(1710504000)};

TEST(DataCache, NamesAFileAmongTheDocumentsWithoutMakingIt) {
    const auto documents = FileManager::documentsDirectory();
    EXPECT_EQ(DataCache::sharedInstance()->cacheFilePath(),
              documents ? std::optional(documents->string() + "/cache-app-v4.json") : std::nullopt);
    FileManager::setDocumentsDirectory("/nowhere/at/all");
    EXPECT_EQ(DataCache::make("cache.json")->cacheFilePath(), "/nowhere/at/all/cache.json");
    FileManager::setDocumentsDirectory("");
    EXPECT_EQ(DataCache::make("cache.json")->cacheFilePath(), std::nullopt);
    FileManager::setDocumentsDirectory(std::nullopt);
    EXPECT_EQ(DataCache::sharedInstance(), DataCache::sharedInstance());
}

TEST(DataCache, ReplacesRecordsAndWritesThemAsJSON) {
    const auto cache = DataCache::make("cache.json");
    EXPECT_EQ(cache->lookup("a"), std::nullopt);
    cache->store("a", {.data = Data("old"), .date = noon, .lastModified = "then"});
    cache->store("b", {.data = Data("{}"), .date = noon, .lastModified = "then"});
    const DataCacheRecord record{.data = Data("new"), .date = noon, .lastModified = std::nullopt};
    cache->store("a", record);
    EXPECT_EQ(cache->lookup("a"), record);

    const auto json = JSONEncoder{.outputFormatting = {.sortedKeys = true}}.encode(cache->cache());
    EXPECT_EQ(json->text(), R"({"a":{"data":"bmV3","date":1710504000.0},)"
                            R"("b":{"data":"e30=","date":1710504000.0,"lastModified":"then"}})");
    EXPECT_EQ(JSONDecoder().decode<DataCache::Records>(*json), cache->cache());
}

TEST(DataCache, IsSharedByThreads) {
    const auto cache = DataCache::make("cache.json");
    std::vector<std::jthread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                const std::string key = std::to_string(i % 7);
                cache->store(key, {.data = Data(key), .date = noon, .lastModified = key});
                const auto record = cache->lookup(key);
                ASSERT_TRUE(record && record->data == Data(key));
            }
        });
    }
    threads.clear();
    EXPECT_EQ(cache->cache().size(), 7U);
}

TEST(APIDataCache, StaysForeverWithATimeToLiveAndGoesAtOnceWithout) {
    const auto entry = [](double seen) {
        return APIDataCache::stamped(Data("{}"), "then", SecondsSince1970(7), noon, noon + Date::duration(seen));
    };
    const auto fresh = entry(0);
    EXPECT_EQ(fresh.lastUpdate, 0);
    EXPECT_EQ(fresh.lastUpdateDate, noon);
    EXPECT_LT(entry(1e-6).lastUpdate, 0) << "an interval, not a time";

    const struct {
        double timeToLive;
        bool survives;
    } rows[] = {{30, true}, {1e-4, true}, {1e300, true}, {0, false}, {-1, false}, {-1e300, false}};

    for (const auto& [timeToLive, survives] : rows) {
        EXPECT_EQ(fresh.survivesCleanup(timeToLive), survives) << timeToLive;
        EXPECT_EQ(entry(1e-6).survivesCleanup(timeToLive), survives) << timeToLive;
    }
}

}  // namespace
}  // namespace corvane
