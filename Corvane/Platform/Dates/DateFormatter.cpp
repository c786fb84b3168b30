#include <algorithm>
#include <array>
#include <cstddef>

#include <Corvane/Platform/Dates/DateFormatter.hpp>

namespace corvane {

namespace {

// 'd' stands for a digit and 'a' for anything; the names are looked up.
constexpr std::string_view httpDateShape = "aaa, dd aaa dddd dd:dd:dd aaa";

constexpr std::array<std::string_view, 7> weekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr bool isOfShape(std::string_view text, std::string_view shape) noexcept {
    return std::ranges::equal(text, shape, [](char c, char expected) {
        if (expected == 'a') return true;
        return expected == 'd' ? c >= '0' && c <= '9' : c == expected;
    });
}

constexpr unsigned number(std::string_view digits) noexcept {
    unsigned value = 0;
    for (const char digit : digits)
        value = 10 * value + static_cast<unsigned>(digit - '0');
    return value;
}

}  // namespace

const DateFormatter& DateFormatter::httpDate() noexcept {
    static constexpr DateFormatter formatter;
    return formatter;
}

std::optional<Date> DateFormatter::date(std::optional<std::string_view> text) const noexcept {
    if (!text || !isOfShape(*text, httpDateShape)) return std::nullopt;
    const auto part = [&](std::size_t from, std::size_t length) { return text->substr(from, length); };

    const auto* const month = std::ranges::find(months, part(8, 3));
    const auto zone = part(26, 3);
    if (month == months.end() || std::ranges::find(weekdays, part(0, 3)) == weekdays.end()) return std::nullopt;
    if (zone != "GMT" && zone != "UTC") return std::nullopt;

    const std::chrono::year_month_day day(std::chrono::year(static_cast<int>(number(part(12, 4)))),
                                          std::chrono::month(static_cast<unsigned>(month - months.begin()) + 1),
                                          std::chrono::day(number(part(5, 2))));
    const unsigned hour = number(part(17, 2));
    const unsigned minute = number(part(20, 2));
    const unsigned second = number(part(23, 2));
    const bool isLeapSecond = hour == 23 && minute == 59 && second == 60;
    if (!day.ok() || hour > 23 || minute > 59 || (second > 59 && !isLeapSecond)) return std::nullopt;

    return std::chrono::sys_days(day) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
           std::chrono::seconds(second);
}

}  // namespace corvane
