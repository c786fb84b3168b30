#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

APICacheProtocol::~APICacheProtocol() = default;

std::shared_ptr<DataCacheProvider> DataCacheProvider::make(double cleanupInterval, double cachePeriod) {
    const std::shared_ptr<DataCacheProvider> provider(new DataCacheProvider(cleanupInterval, cachePeriod));
    spawn(provider->startPeriodicalCleanup());
    return provider;
}

DataCacheProvider::DataCacheProvider(double cleanupInterval, double cachePeriod)
    : Actor("org.corvane.DataCacheProvider"), timeToLive_(cachePeriod), cleanupInterval_(cleanupInterval) {}

DataCacheProvider::~DataCacheProvider() {
    periodicalCleanupTask_.cancel();
}

Task<> DataCacheProvider::set(Data data, std::optional<std::string> lastModified, SecondsSince1970 serverTimeStamp,
                              std::string key) {
    return perform([data = std::move(data), lastModified = std::move(lastModified), serverTimeStamp,
                    key = std::move(key)](DataCacheProvider& self) mutable {
        const auto stored = Clock::current().now();
        self.cache_.insert_or_assign(
            std::move(key), APIDataCache::stamped(std::move(data), std::move(lastModified), serverTimeStamp, stored,
                                                  Clock::current().now()));
    });
}

Task<std::optional<APIDataCache>> DataCacheProvider::data(std::optional<std::string> key) {
    return perform([key = std::move(key)](DataCacheProvider& self) -> std::optional<APIDataCache> {
        if (!key) return std::nullopt;
        const auto entry = self.cache_.find(*key);
        return entry == self.cache_.end() ? std::nullopt : std::optional(entry->second);
    });
}

Task<> DataCacheProvider::purge() {
    return perform([](DataCacheProvider& self) { self.cache_.clear(); });
}

Task<> DataCacheProvider::updateInterval(double cleanup, double timeToLive) {
    return perform([cleanup, timeToLive](DataCacheProvider& self) {
        self.timeToLive_ = timeToLive;
        if (cleanup == self.cleanupInterval_) return;
        self.cleanupInterval_ = cleanup;
        self.startPass();
    });
}

Task<> DataCacheProvider::startPeriodicalCleanup() {
    return perform([](DataCacheProvider& self) { self.startPass(); });
}

void DataCacheProvider::startPass() {
    periodicalCleanupTask_.cancel();
    periodicalCleanupTask_ = spawn(pass(weak_from_this(), cleanupInterval_));
}

Task<> DataCacheProvider::pass(std::weak_ptr<DataCacheProvider> weak, double interval) {
    // Cut short or not: whether the task is cancelled is asked where nothing can cancel it meanwhile.
    static_cast<void>(co_await Task<>::sleep(interval));
    const auto self = weak.lock();
    if (!self) co_return;
    co_await self->perform([](DataCacheProvider& provider) {
        if (Task<>::isNotCancelled()) provider.cleanUp();
    });
}

void DataCacheProvider::cleanUp() {
    std::erase_if(cache_, [&](const auto& entry) { return !entry.second.survivesCleanup(timeToLive_); });
}

}  // namespace corvane
