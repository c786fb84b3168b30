#pragma once

#include <memory>
#include <optional>
#include <utility>

#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

/// A model that an `APIRepository` keeps, and for how long it is good: a value that shares its model. Ages are counted
/// on the wall clock of the clock in force.
template <class Model>
struct APIRepositoryCache {
    /// Made now. Periods are seconds.
    explicit APIRepositoryCache(std::shared_ptr<const Model> withData, std::optional<double> minPeriod = std::nullopt,
                                std::optional<double> maxPeriod = std::nullopt)
        : data(std::move(withData)),
          creationTimestamp(Clock::current().now().time_since_epoch().count()),
          minCachePeriod(minPeriod),
          maxCachePeriod(maxPeriod) {}

    /// Never null.
    std::shared_ptr<const Model> data;

    /// Seconds since 1970-01-01T00:00:00Z; this machine's time, not the server's.
    double creationTimestamp;

    std::optional<double> minCachePeriod;
    std::optional<double> maxCachePeriod;

    /// Whether the entry is younger than its minimum period: good enough for those who want none from the cache. Never
    /// without a minimum.
    [[nodiscard]] bool isNewLaid() const { return minCachePeriod && age() < *minCachePeriod; }

    /// Whether the entry is older than its maximum period, exactly as old not included: good for nobody. Never without
    /// a maximum.
    [[nodiscard]] bool isOutdated() const { return maxCachePeriod && *maxCachePeriod < age(); }

  private:
    [[nodiscard]] double age() const { return Clock::current().now().time_since_epoch().count() - creationTimestamp; }
};

}  // namespace corvane
