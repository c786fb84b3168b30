#include <algorithm>
#include <cstddef>
#include <utility>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/ZoneRules.hpp>

namespace corvane {

namespace {

/// Takes a POSIX TZ string from the front; every step is absent when the text does not go on as it should.
class Reader {
  public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool isAtEnd() const noexcept { return rest_.empty(); }

    bool skip(char expected) noexcept {
        if (!rest_.starts_with(expected)) return false;
        rest_.remove_prefix(1);
        return true;
    }

    /// Three letters or more, or anything a name is made of between angle brackets.
    std::optional<std::string> abbreviation() {
        const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
        const auto isQuotable = [&](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-'; };
        const bool isQuoted = skip('<');
        const auto end =
            isQuoted ? std::ranges::find_if_not(rest_, isQuotable) : std::ranges::find_if_not(rest_, isLetter);
        const auto length = static_cast<std::size_t>(end - rest_.begin());
        std::string name(rest_.substr(0, length));
        rest_.remove_prefix(length);
        if (length < 3 || length > 30 || (isQuoted && !skip('>'))) return std::nullopt;
        return name;
    }

    /// At most `most`.
    std::optional<int> number(int most) noexcept {
        int value = 0;
        std::size_t length = 0;
        for (; length < rest_.size() && isDigit(rest_[length]); ++length) {
            value = value * 10 + (rest_[length] - '0');
            if (value > most) return std::nullopt;
        }
        rest_.remove_prefix(length);
        return length == 0 ? std::nullopt : std::optional(value);
    }

    /// [+-]hh[:mm[:ss]] in seconds.
    std::optional<std::int32_t> time(int mostHours) noexcept {
        const bool isNegative = skip('-');
        if (!isNegative) skip('+');
        const auto hours = number(mostHours);
        if (!hours) return std::nullopt;
        std::int32_t seconds = *hours * 3600;
        for (const int unit : {60, 1}) {
            if (!skip(':')) break;
            const auto part = number(59);
            if (!part) return std::nullopt;
            seconds += *part * unit;
        }
        return isNegative ? -seconds : seconds;
    }

    std::optional<PosixZone::Change> change() noexcept {
        using Change = PosixZone::Change;
        Change change;
        bool isWhole = true;
        const auto take = [&](int& field, int least, int most) {
            const auto value = number(most);
            isWhole = isWhole && value && *value >= least;
            field = value.value_or(0);
        };
        if (skip('M')) {
            take(change.month, 1, 12);
            isWhole = isWhole && skip('.');
            take(change.week, 1, 5);
            isWhole = isWhole && skip('.');
            take(change.day, 0, 6);
        } else if (skip('J')) {
            change.kind = Change::Kind::julianDay;
            take(change.day, 1, 365);
        } else {
            change.kind = Change::Kind::dayOfYear;
            take(change.day, 0, 365);
        }
        if (isWhole && skip('/')) {
            const auto time = this->time(167);
            isWhole = time.has_value();
            change.time = time.value_or(0);
        }
        return isWhole ? std::optional(change) : std::nullopt;
    }

  private:
    static bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

    std::string_view rest_;
};

}  // namespace

std::int64_t PosixZone::Change::inYear(std::int64_t year) const noexcept {
    const std::int64_t newYear = civil::daysFrom(year, 1, 1);
    std::int64_t date = newYear;
    switch (kind) {
        case Kind::julianDay: {
            // The 29th of February is never counted.
            const bool isAfterLeapDay = day >= 60 && civil::daysInMonth(year, 2) == 29;
            date += day - 1 + (isAfterLeapDay ? 1 : 0);
            break;
        }
        case Kind::dayOfYear:
            date += day;
            break;
        case Kind::weekday: {
            const auto monthNumber = static_cast<unsigned>(month);
            const std::int64_t first = civil::daysFrom(year, monthNumber, 1);
            const std::int64_t ahead = civil::floorModulo(day - (static_cast<int>(civil::weekday(first)) - 1), 7);
            std::int64_t dayOfMonth = ahead + 7 * (week - 1);
            // The fifth means the last.
            if (dayOfMonth >= civil::daysInMonth(year, monthNumber)) dayOfMonth -= 7;
            date = first + dayOfMonth;
            break;
        }
    }
    return date * civil::secondsPerDay + time;
}

std::optional<PosixZone> PosixZone::parse(std::string_view text) {
    Reader reader(text);
    PosixZone zone;

    auto name = reader.abbreviation();
    // POSIX counts what has to be added to reach UTC, so the signs are the other way round.
    const auto offset = name ? reader.time(24) : std::nullopt;
    if (!offset) return std::nullopt;
    zone.standard = {.abbreviation = *std::move(name), .offset = -*offset};
    if (reader.isAtEnd()) return zone;

    auto daylightName = reader.abbreviation();
    if (!daylightName) return std::nullopt;
    zone.daylight = {.abbreviation = *std::move(daylightName), .offset = zone.standard.offset + 3600};
    if (!reader.isAtEnd() && !reader.skip(',')) {
        const auto daylightOffset = reader.time(24);
        if (!daylightOffset) return std::nullopt;
        zone.daylight->offset = -*daylightOffset;
        if (!reader.isAtEnd() && !reader.skip(',')) return std::nullopt;
    }
    // Without a rule, that of the United States, as libc has it.
    Reader rule(",M3.2.0,M11.1.0");
    Reader& changes = reader.isAtEnd() ? rule : reader;
    if (reader.isAtEnd()) rule.skip(',');
    const auto toDaylight = changes.change();
    if (!toDaylight || !changes.skip(',')) return std::nullopt;
    const auto toStandard = changes.change();
    if (!toStandard || !changes.isAtEnd()) return std::nullopt;
    zone.toDaylight = *toDaylight;
    zone.toStandard = *toStandard;
    return zone;
}

}  // namespace corvane
