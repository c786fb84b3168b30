#pragma once

#include <optional>
#include <string>
#include <utility>

#include <Corvane/Core/CustomTypes/TaggedType/SecondsSince1970Tag.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

/// A body as a `DataCacheProvider` keeps it, with the server's marks on it.
struct APIDataCache {
    Data data;
    /// Seconds, zero or a hair below: see `stamped`.
    double lastUpdate;
    /// When the entry was stored.
    Date lastUpdateDate;
    /// The server's validator, byte for byte as its "Last-Modified" had it.
    std::optional<std::string> lastModified;
    /// When the server produced the body.
    SecondsSince1970 timeStamp;

    /// The entry that is stored at `stored`, seen at `now`, right afterwards. `lastUpdate` is deliberately the interval
    /// between the two and no absolute time; `survivesCleanup` stands on that.
    [[nodiscard]] static APIDataCache stamped(Data data, std::optional<std::string> lastModified,
                                              SecondsSince1970 serverTimeStamp, Date stored, Date now) noexcept {
        return {.data = std::move(data),
                .lastUpdate = (stored - now).count(),
                .lastUpdateDate = stored,
                .lastModified = std::move(lastModified),
                .timeStamp = serverTimeStamp};
    }

    /// Whether the entry is kept by a clean-up pass: whether the interval from now to the cutoff, `timeToLive` seconds
    /// ago, is below `lastUpdate`. Deliberately so whatever the entry's age: with a positive `timeToLive` an entry
    /// stays, otherwise it goes.
    [[nodiscard]] bool survivesCleanup(double timeToLive) const noexcept { return -timeToLive < lastUpdate; }

    friend bool operator==(const APIDataCache&, const APIDataCache&) = default;
};

}  // namespace corvane
