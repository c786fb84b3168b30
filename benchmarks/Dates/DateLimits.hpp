#pragma once

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

/// Each form written and read by hand, for dates that are right, in the years with four digits.
namespace limits {

inline void putTwo(char* to, unsigned number) {
    to[0] = static_cast<char>('0' + number / 10);
    to[1] = static_cast<char>('0' + number % 10);
}

struct Civil {
    std::chrono::year_month_day day;
    unsigned second;

    explicit Civil(std::int64_t time) {
        const std::chrono::sys_seconds instant{std::chrono::seconds(time)};
        const auto midnight = std::chrono::floor<std::chrono::days>(instant);
        day = midnight;
        second = static_cast<unsigned>((instant - midnight).count());
    }
};

/// "yyyyMMddHHmmss"
inline std::string compactText(std::int64_t time) {
    const Civil civil(time);
    const auto year = static_cast<unsigned>(static_cast<int>(civil.day.year()));
    char text[14];
    putTwo(text, year / 100);
    putTwo(text + 2, year % 100);
    putTwo(text + 4, static_cast<unsigned>(civil.day.month()));
    putTwo(text + 6, static_cast<unsigned>(civil.day.day()));
    putTwo(text + 8, civil.second / 3600);
    putTwo(text + 10, civil.second / 60 % 60);
    putTwo(text + 12, civil.second % 60);
    return {text, sizeof text};
}

/// "H:mm, d MMMM yyyy"
inline std::string longText(std::int64_t time) {
    constexpr std::string_view months[] = {"January", "February", "March",     "April",   "May",      "June",
                                           "July",    "August",   "September", "October", "November", "December"};
    const Civil civil(time);
    char text[32];
    char* to = std::to_chars(text, text + 2, civil.second / 3600).ptr;
    *to++ = ':';
    putTwo(to, civil.second / 60 % 60);
    to += 2;
    *to++ = ',';
    *to++ = ' ';
    to = std::to_chars(to, to + 2, static_cast<unsigned>(civil.day.day())).ptr;
    *to++ = ' ';
    const std::string_view month = months[static_cast<unsigned>(civil.day.month()) - 1];
    to = std::copy(month.begin(), month.end(), to);
    *to++ = ' ';
    to = std::to_chars(to, to + 4, static_cast<int>(civil.day.year())).ptr;
    return {text, static_cast<std::size_t>(to - text)};
}

/// A zone as a sorted table.
struct Zone {
    std::vector<std::int64_t> starts;
    std::vector<int> offsets;

    [[nodiscard]] int offset(std::int64_t time) const {
        return offsets[static_cast<std::size_t>(std::ranges::upper_bound(starts, time) - starts.begin()) - 1];
    }
};

/// "HH:mm" in a zone
inline std::string clockText(std::int64_t time, const Zone& zone) {
    const std::int64_t local = time + zone.offset(time);
    const auto second = static_cast<unsigned>(local - local / 86'400 * 86'400);
    char text[5];
    putTwo(text, second / 3600);
    text[2] = ':';
    putTwo(text + 3, second / 60 % 60);
    return {text, sizeof text};
}

inline std::int64_t secondsOf(int year, unsigned month, unsigned day, std::int64_t second) {
    const std::chrono::sys_days days = std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day);
    return days.time_since_epoch().count() * std::int64_t{86'400} + second;
}

inline std::int64_t parseCompact(std::string_view text) {
    std::int64_t number = 0;
    for (const char digit : text)
        number = number * 10 + (digit - '0');
    const std::int64_t date = number / 1'000'000;
    const std::int64_t time = number % 1'000'000;
    return secondsOf(static_cast<int>(date / 10'000), static_cast<unsigned>(date / 100 % 100),
                     static_cast<unsigned>(date % 100), time / 10'000 * 3600 + time / 100 % 100 * 60 + time % 100);
}

inline std::int64_t parseHTTPDate(std::string_view text) {
    constexpr const char* months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const auto two = [&](std::size_t place) { return (text[place] - '0') * 10 + text[place + 1] - '0'; };
    unsigned month = 0;
    while (month < 12 && std::memcmp(months + std::size_t{3} * month, text.data() + 8, 3) != 0)
        ++month;
    return secondsOf(two(12) * 100 + two(14), month + 1, static_cast<unsigned>(two(5)),
                     two(17) * 3600 + two(20) * 60 + two(23));
}

}  // namespace limits
