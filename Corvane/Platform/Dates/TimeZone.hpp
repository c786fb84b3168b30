#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

class ZoneRules;

/// How far clocks are ahead of UTC at an instant: the rules of a region, or one offset for all time.
///
///     const auto paris = TimeZone::named("Europe/Paris");
///     paris->secondsFromGMT(kickOff);  // 7200 in summer
///
/// Rules come from the system's time-zone database, never from a copy. A zone that was asked for once stays as it was
/// then; of `system()` and `current()`, each call gives the zone of that moment. A small value, free to copy; any
/// thread.
///
/// Two zones are the device's: `system()` is the operating system's, and `current()` is the same unless the application
/// has overridden it.
class CORVANE_EXPORT TimeZone {
  public:
    /// The zone with the identifier "UTC".
    [[nodiscard]] static const TimeZone& utc() noexcept;

    /// The zone of that name in the time-zone database ("Europe/Paris", "Etc/GMT+5"), or of an identifier that a zone
    /// of a fixed offset has. Absent when there is none, and for files that count leap seconds ("right/...").
    [[nodiscard]] static std::optional<TimeZone> named(std::string_view identifier);

    /// A zone that is `seconds` ahead of UTC all the time, called "GMT", "GMT+0530" or "GMT-033015". Absent when that
    /// is more than 18 hours either way.
    [[nodiscard]] static std::optional<TimeZone> withSecondsFromGMT(int seconds);

    /// The operating system's zone, found as libc finds it: the variable TZ (POSIX.1-2017, section 8.3, or the name of
    /// a file), else /etc/localtime, else UTC. A change is noticed within a second, or at once after
    /// `resetSystemTimeZone()`.
    [[nodiscard]] static TimeZone system();

    /// The zone that the application has put in force with `setCurrent`, else `system()`.
    [[nodiscard]] static TimeZone current();

    /// Overrides the zone that everything in the process takes for the device's, or, without a zone, ends that.
    static void setCurrent(std::optional<TimeZone> zone);

    /// Looks for the operating system's zone anew, as after a change of TZ.
    static void resetSystemTimeZone();

    /// Of a zone in the database, its name; of one that TZ spells out, that text.
    [[nodiscard]] std::string identifier() const;

    /// How far the zone's clocks are ahead of UTC at `date`; now, on the clock in force, without it. Instants that have
    /// no date (not-a-number, or millions of years away) are taken for 1970.
    [[nodiscard]] int secondsFromGMT(Date date) const noexcept;
    [[nodiscard]] int secondsFromGMT() const noexcept;

    /// Whether daylight-saving time is in force at `date`, as the database has it: in Dublin, that is in winter.
    [[nodiscard]] bool isDaylightSavingTime(Date date) const noexcept;

    /// In seconds, what daylight saving adds at `date`: the offset from GMT less that of the zone's standard time at
    /// that instant. Negative where winter is the daylight-saving side, zero while standard time is in force.
    [[nodiscard]] int daylightSavingTimeOffset(Date date) const noexcept;

    /// What the zone's time is called at `date`: "CEST", "+0530".
    [[nodiscard]] std::string abbreviation(Date date) const;

    /// The first instant after `date` at which the zone's offset, or the name of its time, changes. Absent when none
    /// is foreseen.
    [[nodiscard]] std::optional<Date> nextTransition(Date date) const noexcept;

    [[nodiscard]] bool operator==(const TimeZone&) const noexcept = default;

  private:
    friend class ZoneAccess;

    struct Region;

    enum class Kind : std::uint8_t { utc, fixed, region };

    constexpr TimeZone(Kind kind, std::int32_t offset, const Region* region) noexcept
        : region_(region), offset_(offset), kind_(kind) {}

    const Region* region_;
    std::int32_t offset_;
    Kind kind_;
};

}  // namespace corvane
