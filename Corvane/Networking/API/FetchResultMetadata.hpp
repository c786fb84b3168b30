#pragma once

#include <optional>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// Where an answer of an `APIRepository` came from.
struct CORVANE_EXPORT FetchResultMetadata {
    /// Whether the cache was asked for: by the request itself when the cache answered it, otherwise by the request that
    /// started the fetch, which is the same for all that the fetch answers.
    bool cachedDataRequested = false;

    /// Whether the model came from the repository's cache.
    bool cachedDataReturned = false;

    /// When the cached entry was made, in seconds since 1970-01-01T00:00:00Z: the one that answered, the one that the
    /// fetch has just made or, after a failure, the one that is still there; absent when there is none.
    std::optional<double> cacheCreationTimestamp = {};

    /// "didRequestCached: true, didPenetrateCache: false, created: Optional(1700000000.0)", or "created: nil".
    [[nodiscard]] std::string debugDescription() const;

    friend bool operator==(const FetchResultMetadata&, const FetchResultMetadata&) = default;
};

}  // namespace corvane
