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

    [[nodiscard]] double minCachePeriod() const noexcept { return minCachePeriod_; }

    [[nodiscard]] double maxCachePeriod() const noexcept { return maxCachePeriod_; }

    /// Answers `callback` from the cache before it returns, or lets it wait for a fetch. True when none is running: the
    /// caller has to run one and to report it with `finishFetch`.
    [[nodiscard]] bool admit(bool useCache, Callback callback) {
        std::optional<Cache> served;
        {
            const std::lock_guard guard(lock_);
            if (cache_ && (useCache || cache_->isNewLaid()) && !cache_->isOutdated()) {
                served = cache_;
            } else if (isSuperseded_) {
                if (waitingForNext_.empty()) nextUseCache_ = useCache;
                waitingForNext_.push_back(std::move(callback));
                return false;
            } else {
                waiting_.push_back(std::move(callback));
                return !std::exchange(isFetching_, true);
            }
        }
        const FetchResultMetadata metadata{.cachedDataRequested = useCache,
                                           .cachedDataReturned = true,
                                           .cacheCreationTimestamp = served->creationTimestamp};
        if (callback) callback(std::move(served->data), metadata);
        return false;
    }

    /// Ends the fetch that `admit`, or the end of the fetch before, asked for. Keeps its model, and answers who waits
    /// on the calling thread, the latest first; also those who come while it does. With the last answer no fetch is
    /// running any more, unless somebody waits for one after an `update`: then the caller has to run another one, with
    /// the `useCache` that this gives.
    [[nodiscard]] std::optional<bool> finishFetch(bool useCache, const Result& result) {
        const FetchResultMetadata metadata{
            .cachedDataRequested = useCache, .cachedDataReturned = false, .cacheCreationTimestamp = keep(result)};
        std::optional<bool> next;
        while (auto callback = takeLatest(next)) {
            if (*callback) (*callback)(result, metadata);
        }
        return next;
    }

    /// What is asked from here on is not answered with an outcome that is there already: neither the one that a fetch
    /// is just telling about, nor, when flushing, the cached model.
    void update(bool flushingCache) {
        std::optional<Cache> former;
        const std::lock_guard guard(lock_);
        isSuperseded_ = isAnswering_;
        if (flushingCache) cache_.swap(former);
    }

  private:
    /// Gives when the cached model was made.
    std::optional<double> keep(const Result& result) {
        std::optional<Cache> entry;
        if (result) entry.emplace(*result, minCachePeriod_, maxCachePeriod_);
        // The former model ends after the lock is released.
        const std::lock_guard guard(lock_);
        isAnswering_ = true;
        if (entry) cache_.swap(entry);
        return cache_ ? std::optional(cache_->creationTimestamp) : std::nullopt;
    }

    /// Absent when nobody is waiting; then, in the same step, the fetch is no longer running, so that whoever
    /// comes later does not wait for it, or the next one is.
    [[nodiscard]] std::optional<Callback> takeLatest(std::optional<bool>& next) {
        std::vector<Callback> storage;
        const std::lock_guard guard(lock_);
        if (!waiting_.empty()) {
            std::optional latest = std::move(waiting_.back());
            waiting_.pop_back();
            return latest;
        }
        storage.swap(waiting_);
        waiting_.swap(waitingForNext_);
        isFetching_ = !waiting_.empty();
        isAnswering_ = false;
        isSuperseded_ = false;
        if (isFetching_) next = nextUseCache_;
        return std::nullopt;
    }

    const double minCachePeriod_;
    const double maxCachePeriod_;
    UnfairLock lock_;
    std::optional<Cache> cache_;
    std::vector<Callback> waiting_;
    bool isFetching_ = false;
    /// The fetch has its outcome, and is telling those who wait.
    bool isAnswering_ = false;
    /// There was an update since: who comes now waits for the next fetch.
    bool isSuperseded_ = false;
    std::vector<Callback> waitingForNext_;
    bool nextUseCache_ = false;
};

}  // namespace corvane::detail
