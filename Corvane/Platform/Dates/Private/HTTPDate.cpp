#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/HTTPDate.hpp>

namespace corvane {

namespace {

/// Eight bytes, the first one lowest.
std::uint64_t word(std::string_view text, std::size_t place) noexcept {
    std::uint64_t value = 0;
    std::memcpy(&value, &text[place], sizeof value);
    if constexpr (std::endian::native == std::endian::big) value = std::byteswap(value);
    return value;
}

/// The same of a text known beforehand, of which fewer bytes may be there.
consteval std::uint64_t packed(std::string_view text) {
    std::uint64_t value = 0;
    for (std::size_t place = 0; place < text.size(); ++place)
        value |= std::uint64_t{static_cast<unsigned char>(text[place])} << (8 * place);
    return value;
}

/// Eight bytes of the form, of which '0' stands for a digit and '*' for anything.
class Shape {
  public:
    consteval explicit Shape(std::string_view shape) {
        for (std::size_t place = 0; place < shape.size(); ++place) {
            const char c = shape[place];
            const auto byte = [&](unsigned value) { return std::uint64_t{value} << (8 * place); };
            if (c == '*') continue;
            expected_ |= byte(static_cast<unsigned char>(c));
            forbidden_ |= c == '0' ? byte(0xf0) : byte(0xff);
            if (c == '0') beyondNine_ |= byte(6);
        }
    }

    /// The values of the digits, zero for what stands between them, and whatever was left open.
    [[nodiscard]] constexpr std::uint64_t values(std::uint64_t bytes) const noexcept { return bytes ^ expected_; }

    /// Of such values, zero when the bytes are of this shape. A carry out of a byte comes from a wrong byte.
    [[nodiscard]] constexpr std::uint64_t faults(std::uint64_t values) const noexcept {
        return (values | (values + beyondNine_)) & forbidden_;
    }

  private:
    std::uint64_t expected_ = 0;
    std::uint64_t forbidden_ = 0;
    std::uint64_t beyondNine_ = 0;
};

/// The numbers that digits make with those behind them, each in the byte of the first one. What is left open overflows
/// into one byte above it, which is none of a digit here.
constexpr std::uint64_t pairs(std::uint64_t values) noexcept {
    return values * 10 + (values >> 8U);
}

constexpr unsigned byte(std::uint64_t bytes, unsigned place) noexcept {
    return static_cast<unsigned>(bytes >> (8 * place)) & 0xff;
}

/// Finds one of a few names of three letters by one multiplication and one comparison.
class NameTable {
  public:
    template <std::size_t count>
    consteval explicit NameTable(const char (&names)[count]) {
        while (!fill({names, count - 1}))
            factor_ += 2;
    }

    /// Whether the first three bytes are a name; its number, from 1.
    [[nodiscard]] constexpr bool find(std::uint64_t bytes, unsigned& number) const noexcept {
        const auto name = static_cast<std::uint32_t>(bytes & 0xff'ffff);
        const Entry& entry = entries_[place(name)];
        number = entry.number;
        return entry.name == name;
    }

  private:
    struct Entry {
        /// What no three bytes make.
        std::uint32_t name = 0xffff'ffff;
        unsigned number = 0;
    };

    [[nodiscard]] constexpr std::size_t place(std::uint32_t name) const noexcept { return name * factor_ >> 28U; }

    constexpr bool fill(std::string_view names) noexcept {
        entries_ = {};
        for (unsigned number = 1; !names.empty(); names.remove_prefix(3), ++number) {
            std::uint32_t name = 0;
            for (unsigned letter = 0; letter < 3; ++letter)
                name |= static_cast<std::uint32_t>(static_cast<unsigned char>(names[letter])) << (8 * letter);
            Entry& entry = entries_[place(name)];
            if (entry.number != 0) return false;
            entry = {name, number};
        }
        return true;
    }

    std::uint32_t factor_ = 0x9e3779b1;
    std::array<Entry, 16> entries_{};
};

constexpr NameTable months("JanFebMarAprMayJunJulAugSepOctNovDec");
constexpr NameTable weekdays("SunMonTueWedThuFriSat");

/// Hours, minutes and seconds at the places where the pairs of "00:00:00" are.
constexpr std::uint64_t packedTime(std::uint64_t hour, std::uint64_t minute, std::uint64_t second) noexcept {
    return hour | minute << 24U | second << 48U;
}

/// Whether any of them is too large, leap seconds included.
constexpr bool isBeyond(std::uint64_t time) noexcept {
    return ((time + packedTime(127 - 23, 127 - 59, 127 - 59)) & packedTime(0x80, 0x80, 0x80)) != 0;
}

struct Month {
    /// In a year that is no leap year.
    std::uint16_t daysBefore = 0;
    std::uint8_t length = 0;
    bool isBehindLeapDay = false;
};

/// From 1, as its number is.
constexpr std::array<Month, 13> monthsOfYear = [] {
    std::array<Month, 13> made;
    unsigned daysBefore = 0;
    for (unsigned month = 1; month <= 12; ++month) {
        const unsigned length = civil::daysInMonth(1970, month);
        made[month] = {static_cast<std::uint16_t>(daysBefore), static_cast<std::uint8_t>(length), month > 2};
        daysBefore += length;
    }
    return made;
}();

/// The day of that name, counted from 1970-01-01. Whether there is one.
bool findDay(unsigned century, unsigned yearOfCentury, unsigned month, unsigned day, std::int64_t& days) noexcept {
    if (century < 16) [[unlikely]] {
        // The Julian calendar's, and the change of calendars.
        const unsigned year = 100 * century + yearOfCentury;
        days = civil::daysFrom(year, month, day);
        return civil::isDay(year, month, day);
    }
    constexpr int daysPerCentury = 36'524;
    constexpr int fromYearZero = 719'528;
    const unsigned isFirstYear = yearOfCentury == 0 ? 1 : 0;
    const unsigned isLeapCentury = century % 4 == 0 ? 1 : 0;
    const unsigned isLeapYear = ((isFirstYear != 0 ? century : yearOfCentury) & 3) == 0 ? 1 : 0;
    const Month& found = monthsOfYear[month];
    const unsigned leapDaysBefore = (century + 3) / 4 + (yearOfCentury + 3) / 4 - ((isFirstYear | isLeapCentury) ^ 1);
    days = static_cast<int>(century * daysPerCentury + yearOfCentury * 365 + leapDaysBefore + found.daysBefore +
                            (isLeapYear & static_cast<unsigned>(found.isBehindLeapDay)) + day - 1) -
           fromYearZero;
    return day - 1 < found.length + (isLeapYear & static_cast<unsigned>(month == 2));
}

}  // namespace

bool parseHTTPDate(std::string_view text, double& seconds) noexcept {
    constexpr std::size_t length = 29;
    if (text.size() != length) return false;
    constexpr Shape dayShape("***, 00 ");
    constexpr Shape yearShape("*** 0000");
    constexpr Shape timeShape("00:00:00");
    // "Sun, 06 ", "Nov 1994", " ", "08:49:37", " GMT"
    const std::uint64_t dayPart = word(text, 0);
    const std::uint64_t yearPart = word(text, 8);
    const std::uint64_t zone = word(text, 21) >> 32U;
    const std::uint64_t dayValues = dayShape.values(dayPart);
    const std::uint64_t yearValues = yearShape.values(yearPart);
    const std::uint64_t timeValues = timeShape.values(word(text, 17));
    const std::uint64_t faults =
        dayShape.faults(dayValues) | yearShape.faults(yearValues) | timeShape.faults(timeValues);
    if (faults != 0 || text[16] != ' ' || (zone != packed(" GMT") && zone != packed(" UTC"))) return false;

    const std::uint64_t yearPairs = pairs(yearValues);
    const std::uint64_t timePairs = pairs(timeValues);
    unsigned weekday = 0;
    unsigned month = 0;
    if (!weekdays.find(dayPart, weekday) || !months.find(yearPart, month)) return false;
    const std::uint64_t time = timePairs & packedTime(0xff, 0xff, 0xff);
    if (isBeyond(time) && time != packedTime(23, 59, 60)) return false;
    std::int64_t days = 0;
    if (!findDay(byte(yearPairs, 4), byte(yearPairs, 6), month, byte(pairs(dayValues), 5), days)) return false;
    const unsigned secondOfDay = byte(time, 0) * 3600 + byte(time, 3) * 60 + byte(time, 6);
    seconds = static_cast<double>(days * civil::secondsPerDay + secondOfDay);
    return true;
}

}  // namespace corvane
