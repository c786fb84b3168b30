#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/APICacheProtocol.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Actor.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>

namespace corvane {

/// A cache in memory for typed remote APIs. Its operations run one at a time on an executor of its own; each holds the
/// provider until it has ended.
///
///     auto cache = DataCacheProvider::make(60, 300);
///     co_await cache->set(body, lastModified, timeStamp, url.absoluteString());
///     const auto entry = co_await cache->data(url.absoluteString());
///
/// Nothing is too old to be read. One clean-up pass, `cleanupInterval` seconds after it was started, drops the entries
/// that do not survive `timeToLive` (see `APIDataCache::survivesCleanup`): deliberately none while that is positive.
/// Use `purge` to empty the cache. A pass is not repeated by itself, and none comes once the provider is gone.
class CORVANE_EXPORT DataCacheProvider final : public APICacheProtocol,
                                               public std::enable_shared_from_this<DataCacheProvider>,
                                               public Actor {
  public:
    /// Makes an empty cache, `cachePeriod` being its `timeToLive`, and starts a pass. Both in seconds; an interval that
    /// `Task<>::sleep` does not take stops the process once the pass begins.
    [[nodiscard]] static std::shared_ptr<DataCacheProvider> make(double cleanupInterval, double cachePeriod);

    ~DataCacheProvider() override;

    [[nodiscard]] Task<> set(Data data, std::optional<std::string> lastModified, SecondsSince1970 serverTimeStamp,
                             std::string key) override;

    [[nodiscard]] Task<std::optional<APIDataCache>> data(std::optional<std::string> key) override;

    /// Empties the cache.
    [[nodiscard]] Task<> purge();

    /// Sets `timeToLive`, and `cleanupInterval` when `cleanup` differs from it; then, and only then, a new pass is
    /// started in place of a pending one.
    [[nodiscard]] Task<> updateInterval(double cleanup, double timeToLive);

    /// Starts a pass in place of a pending one.
    [[nodiscard]] Task<> startPeriodicalCleanup();

  private:
    DataCacheProvider(double cleanupInterval, double cachePeriod);

    template <std::invocable<DataCacheProvider&> Body>
    [[nodiscard]] auto perform(Body body) {
        return run(*this, shared_from_this(), std::move(body));
    }

    /// A first parameter that is an actor makes it run on that one's executor.
    template <std::invocable<DataCacheProvider&> Body>
    static Task<std::invoke_result_t<Body&, DataCacheProvider&>> run(
        DataCacheProvider& self, [[maybe_unused]] std::shared_ptr<DataCacheProvider> owner, Body body) {
        co_return body(self);
    }

    void startPass();
    static Task<> pass(std::weak_ptr<DataCacheProvider> weak, double interval);
    void cleanUp();

    std::unordered_map<std::string, APIDataCache> cache_;
    double timeToLive_;
    double cleanupInterval_;
    TaskHandle<> periodicalCleanupTask_;
};

}  // namespace corvane
