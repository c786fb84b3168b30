#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// What clocks in a zone show between two transitions.
struct ZoneSpan {
    /// The first second of it, since 1970. Of the first span, the least number.
    std::int64_t from;
    /// Seconds ahead of UTC.
    std::int32_t offset;
    /// `offset` without what the zone's standard time has: the summer's hour, or the hour that some winters are behind.
    std::int32_t daylightSaving;
    bool isDaylightSaving;
    std::string abbreviation;
};

/// A rule for the years after the last transition that a zone's file tells: a POSIX TZ string (POSIX.1-2017, section
/// 8.3, with the wider hours of RFC 8536, section 3.3.1).
struct PosixZone {
    /// When one of the two changes comes in a year.
    struct Change {
        enum class Kind { julianDay, dayOfYear, weekday };
        Kind kind = Kind::weekday;
        int month = 0;
        int week = 0;
        int day = 0;
        /// Seconds on the clock that is in force before the change; may be negative or beyond a day.
        std::int32_t time = 7200;

        /// In seconds since 1970, as the clock in force shows them.
        [[nodiscard]] std::int64_t inYear(std::int64_t year) const noexcept;
    };

    struct Time {
        std::string abbreviation;
        std::int32_t offset = 0;
    };

    Time standard;
    /// Absent: standard time all year round.
    std::optional<Time> daylight;
    Change toDaylight;
    Change toStandard;

    /// Absent when `text` is anything else.
    [[nodiscard]] static std::optional<PosixZone> parse(std::string_view text);
};

/// A zone as a table of spans. Immutable; any thread.
///
/// A lookup takes constant time: the table is long enough to repeat itself every 400 years, and an index has an entry
/// for each 49 days of it.
class ZoneRules {
  public:
    /// The spans as a file tells them and the rule for the time after, if any. The first begins with the least number;
    /// of spans with the same start the last one counts. `daylightSaving` is found out here.
    ZoneRules(std::vector<ZoneSpan> spans, const std::optional<PosixZone>& footer);

    /// The span that holds `seconds`. Its `from` and that of the span behind it stand for the table's years, which
    /// are other years for instants far in the future.
    [[nodiscard]] const ZoneSpan& at(std::int64_t seconds) const noexcept { return spans_[indexAt(fold(seconds))]; }

    /// The next instant after `seconds` at which the clocks change.
    [[nodiscard]] std::optional<std::int64_t> nextTransition(std::int64_t seconds) const noexcept;

    /// What a clock time means.
    struct Resolved {
        std::int64_t seconds;
        /// The clocks were never at that time. `seconds` then counts with the offset before the gap.
        bool isSkipped;
        /// The transition that skipped it.
        std::int64_t transition;
    };

    /// The instant, in seconds since 1970, at which clocks show `local`, which is counted as if they were at UTC. The
    /// first of two, and a time that is skipped is moved on by as much (RFC 5545, section 3.3.5).
    [[nodiscard]] Resolved resolve(std::int64_t local) const noexcept;

  private:
    static constexpr unsigned bucketShift = 22;

    /// The same moment of the table's last 400 years for what lies behind it.
    [[nodiscard]] std::int64_t fold(std::int64_t seconds) const noexcept {
        return seconds < end_ ? seconds : foldBack(seconds);
    }

    [[nodiscard]] std::int64_t foldBack(std::int64_t seconds) const noexcept;

    [[nodiscard]] std::size_t indexAt(std::int64_t seconds) const noexcept {
        if (seconds < indexStart_) return 0;
        const auto bucket = static_cast<std::uint64_t>(seconds - indexStart_) >> bucketShift;
        if (bucket >= buckets_.size()) return spans_.size() - 1;
        std::size_t index = buckets_[static_cast<std::size_t>(bucket)];
        while (seconds >= starts_[index + 1])
            ++index;
        return index;
    }

    void appendYears(const PosixZone& footer, const PosixZone::Time& daylight);
    void findDaylightSaving() noexcept;
    void makeIndex();

    std::vector<ZoneSpan> spans_;
    /// Where each span starts, and the greatest number behind the last.
    std::vector<std::int64_t> starts_;
    std::vector<std::uint16_t> buckets_;
    std::int64_t indexStart_ = 0;
    /// Where the table ends: the greatest number unless the rules repeat.
    std::int64_t end_;
};

}  // namespace corvane
