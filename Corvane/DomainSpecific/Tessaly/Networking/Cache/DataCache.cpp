#include <mutex>
#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCache.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>

namespace corvane {

const std::shared_ptr<DataCache>& DataCache::sharedInstance() {
    static const auto* const shared = new std::shared_ptr<DataCache>(make("cache-app-v4.json"));
    return *shared;
}

std::shared_ptr<DataCache> DataCache::make(std::string_view fileName) {
    return std::shared_ptr<DataCache>(new DataCache(fileName));
}

DataCache::DataCache(std::string_view fileName)
    : cacheFilePath_(FileManager::documentsDirectory().transform(
          [&](const std::filesystem::path& directory) { return directory.string() + '/' + std::string(fileName); })) {}

DataCache::Records DataCache::cache() const {
    const std::lock_guard guard(lock_);
    return cache_;
}

void DataCache::store(const std::string& urlString, DataCacheRecord record) {
    const std::lock_guard guard(lock_);
    const auto [entry, isNew] = cache_.try_emplace(urlString, std::move(record));
    // Still whole: try_emplace leaves it alone when the key is there. The older record ends after the lock.
    if (!isNew) std::swap(entry->second, record);  // NOLINT(bugprone-use-after-move)
}

std::optional<DataCacheRecord> DataCache::lookup(const std::string& urlString) const {
    const std::lock_guard guard(lock_);
    const auto entry = cache_.find(urlString);
    return entry == cache_.end() ? std::nullopt : std::optional(entry->second);
}

}  // namespace corvane
