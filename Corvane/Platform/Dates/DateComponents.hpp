#pragma once

#include <cstdint>
#include <optional>

namespace corvane {

/// A date taken apart, or the difference between two. What was not asked for is absent.
struct DateComponents {
    /// 0 before Christ, 1 after.
    std::optional<std::int64_t> era{};
    /// Of the era, from 1.
    std::optional<std::int64_t> year{};
    /// From 1 for January.
    std::optional<std::int64_t> month{};
    /// From 1; which week is the first is the calendar's matter. In a difference, weeks of seven days.
    std::optional<std::int64_t> weekOfYear{};
    /// The year that the week is counted in, astronomical: 0 is 1 BC.
    std::optional<std::int64_t> yearForWeekOfYear{};
    /// From 1 for Sunday.
    std::optional<std::int64_t> weekday{};
    /// From 1.
    std::optional<std::int64_t> dayOfYear{};
    std::optional<std::int64_t> day{};
    std::optional<std::int64_t> hour{};
    std::optional<std::int64_t> minute{};
    std::optional<std::int64_t> second{};
    /// As exact as an instant, to a quarter of a microsecond in our time.
    std::optional<std::int64_t> nanosecond{};

    [[nodiscard]] bool operator==(const DateComponents&) const noexcept = default;
};

}  // namespace corvane
