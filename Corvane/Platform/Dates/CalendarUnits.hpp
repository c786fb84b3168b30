#pragma once

#include <cstdint>

namespace corvane {

/// The parts that a calendar takes dates apart into.
enum class CalendarUnit : std::uint16_t {
    era = 1 << 0,
    year = 1 << 1,
    month = 1 << 2,
    weekOfYear = 1 << 3,
    yearForWeekOfYear = 1 << 4,
    weekday = 1 << 5,
    dayOfYear = 1 << 6,
    day = 1 << 7,
    hour = 1 << 8,
    minute = 1 << 9,
    second = 1 << 10,
    nanosecond = 1 << 11,
};

/// A set of units: `CalendarUnit::hour | CalendarUnit::minute`.
class CalendarUnits {
  public:
    constexpr CalendarUnits() noexcept = default;

    constexpr CalendarUnits(CalendarUnit unit) noexcept  // NOLINT(google-explicit-constructor): one unit is a set
        : bits_(static_cast<std::uint16_t>(unit)) {}

    [[nodiscard]] constexpr bool contains(CalendarUnit unit) const noexcept {
        return (bits_ & static_cast<unsigned>(unit)) != 0;
    }

    [[nodiscard]] constexpr bool isEmpty() const noexcept { return bits_ == 0; }

    constexpr CalendarUnits& operator|=(CalendarUnits other) noexcept {
        bits_ |= other.bits_;
        return *this;
    }

    [[nodiscard]] friend constexpr CalendarUnits operator|(CalendarUnits left, CalendarUnits right) noexcept {
        return left |= right;
    }

    [[nodiscard]] constexpr bool operator==(const CalendarUnits&) const noexcept = default;

  private:
    unsigned bits_ = 0;
};

[[nodiscard]] constexpr CalendarUnits operator|(CalendarUnit left, CalendarUnit right) noexcept {
    return CalendarUnits(left) | CalendarUnits(right);
}

}  // namespace corvane
