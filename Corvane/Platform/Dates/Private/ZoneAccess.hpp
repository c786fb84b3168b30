#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/ZoneRules.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane {

/// A zone whose rules have been read. Never destroyed.
struct TimeZone::Region {
    std::string identifier;
    ZoneRules rules;
};

/// What calendars and formatters ask of a zone, in whole seconds and inline.
class ZoneAccess {
  public:
    [[nodiscard]] static std::int32_t offset(const TimeZone& zone, std::int64_t seconds) noexcept {
        return zone.region_ != nullptr ? zone.region_->rules.at(seconds).offset : zone.offset_;
    }

    /// Null for zones of one offset.
    [[nodiscard]] static const ZoneRules* rules(const TimeZone& zone) noexcept {
        return zone.region_ != nullptr ? &zone.region_->rules : nullptr;
    }

    [[nodiscard]] static ZoneRules::Resolved resolve(const TimeZone& zone, std::int64_t local) noexcept {
        const ZoneRules* const rules = ZoneAccess::rules(zone);
        return rules != nullptr ? rules->resolve(local) : ZoneRules::Resolved{local - zone.offset_, false, 0};
    }

    /// The zone of rules that are kept for good.
    [[nodiscard]] static TimeZone adopt(std::string identifier, ZoneRules rules);
};

/// The whole second in which `date` lies; that of 1970 for what is no instant.
[[nodiscard]] inline std::int64_t wholeSeconds(Date date) noexcept {
    const double seconds = date.time_since_epoch().count();
    return civil::isInstant(seconds) ? civil::floorSeconds(seconds) : 0;
}

}  // namespace corvane
