#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheRecord.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

/// The bodies that a 304 (RFC 9110, section 15.4.5) is answered from: in memory, one record for each absolute URL.
/// Records are replaced, never removed. All operations may be called on any thread.
///
/// Nothing is read from or written to a file. An application that wants its records to last writes `cache()` as JSON
/// to `cacheFilePath()` and stores them again at its next start.
class CORVANE_EXPORT DataCache {
  public:
    using Records = std::unordered_map<std::string, DataCacheRecord>;

    /// The process's cache, with the file name "cache-app-v4.json"; made on first use and never destroyed.
    [[nodiscard]] static const std::shared_ptr<DataCache>& sharedInstance();

    /// An empty cache of the caller's own.
    [[nodiscard]] static std::shared_ptr<DataCache> make(std::string_view fileName);

    DataCache(const DataCache&) = delete;
    DataCache& operator=(const DataCache&) = delete;

    /// The file in what was `FileManager::documentsDirectory` when the cache was made; absent when there was none.
    [[nodiscard]] const std::optional<std::string>& cacheFilePath() const noexcept { return cacheFilePath_; }

    /// A copy of all records, which shares their bodies.
    [[nodiscard]] Records cache() const;

    /// Keeps `record` under `urlString`, in place of an older one.
    void store(const std::string& urlString, DataCacheRecord record);

    [[nodiscard]] std::optional<DataCacheRecord> lookup(const std::string& urlString) const;

  private:
    explicit DataCache(std::string_view fileName);

    const std::optional<std::string> cacheFilePath_;
    mutable UnfairLock lock_;
    Records cache_;
};

}  // namespace corvane
