#include <chrono>

#include <gtest/gtest.h>

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

}  // namespace corvane
