#pragma once

#include <expected>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <Corvane/Networking/API/APIRepositoryCache.hpp>
#include <Corvane/Networking/API/FetchResultMetadata.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/UnfairLock.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane::detail {

/// What an `APIRepository` knows: its cached model, whether a fetch is running, and who waits for it. It decides, and
/// leaves queues and tasks to the repository. Any thread; callbacks are called and destroyed outside its lock.
template <class Model>
class APIRepositoryState {
  public:
    using Cache = APIRepositoryCache<Model>;
    using Result = std::expected<std::shared_ptr<const Model>, AnyError>;
    using Callback = UniqueFunction<void(const Result& result, const FetchResultMetadata& metadata)>;

    APIRepositoryState(double maxCachePeriod, double minCachePeriod) noexcept
        : minCachePeriod_(minCachePeriod), maxCachePeriod_(maxCachePeriod) {}

    /// Answers `callback` from the cache before it returns, or lets it wait for the running fetch. True when no fetch
    /// is running: the caller has to run one and to report it with `finishFetch`.
    [[nodiscard]] bool admit(bool useCache, Callback callback) {
        if (!callback) callback = [](const Result&, const FetchResultMetadata&) {};
        std::optional<Cache> served;
        {
            const std::lock_guard guard(lock_);
            if (cache_ && (useCache || cache_->isNewLaid()) && !cache_->isOutdated()) {
                served = cache_;
            } else {
                waiting_.push_back(std::move(callback));
                return !std::exchange(isFetching_, true);
            }
        }
        callback(std::move(served->data), {.cachedDataRequested = useCache,
                                           .cachedDataReturned = true,
                                           .cacheCreationTimestamp = served->creationTimestamp});
        return false;
    }

    /// Ends the fetch that `admit` asked for. Keeps its model, and answers who waits on the calling thread, the latest
    /// first; also those who come while it does. With the last answer no fetch is running any more.
    void finishFetch(bool useCache, const Result& result) {
        FetchResultMetadata metadata{.cachedDataRequested = useCache};
        if (result) {
            const Cache entry(*result, minCachePeriod_, maxCachePeriod_);
            metadata.cacheCreationTimestamp = entry.creationTimestamp;
            setCache(entry);
        } else {
            const std::lock_guard guard(lock_);
            if (cache_) metadata.cacheCreationTimestamp = cache_->creationTimestamp;
        }
        while (auto callback = takeLatest())
            callback(result, metadata);
    }

    void flush() { setCache(std::nullopt); }

  private:
    void setCache(std::optional<Cache> cache) {
        // The former model ends with the argument, after the lock is released.
        const std::lock_guard guard(lock_);
        cache_.swap(cache);
    }

    /// An empty one when nobody is waiting; then, in the same step, the fetch is no longer running, so that whoever
    /// comes later starts another one instead of waiting for this.
    [[nodiscard]] Callback takeLatest() {
        std::vector<Callback> storage;
        const std::lock_guard guard(lock_);
        if (waiting_.empty()) {
            isFetching_ = false;
            storage.swap(waiting_);
            return {};
        }
        Callback latest = std::move(waiting_.back());
        waiting_.pop_back();
        return latest;
    }

    const double minCachePeriod_;
    const double maxCachePeriod_;
    UnfairLock lock_;
    std::optional<Cache> cache_;
    std::vector<Callback> waiting_;
    bool isFetching_ = false;
};

}  // namespace corvane::detail
