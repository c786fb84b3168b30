#include <algorithm>
#include <array>
#include <cstddef>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/HTTPDate.hpp>

namespace corvane {

namespace {

constexpr std::uint32_t packed(const char* letters) noexcept {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(letters[0])) << 16U |
           static_cast<std::uint32_t>(static_cast<unsigned char>(letters[1])) << 8U |
           static_cast<std::uint32_t>(static_cast<unsigned char>(letters[2]));
}

/// Finds one of a few names of three letters by one multiplication and one comparison.
template <std::size_t count>
class NameTable {
  public:
    consteval explicit NameTable(const std::array<const char*, count>& names) {
        while (!fill(names))
            factor_ += 2;
    }

    /// From 1; 0 for what is no name.
    [[nodiscard]] constexpr unsigned find(const char* letters) const noexcept {
        const std::uint32_t name = packed(letters);
        const Entry& entry = entries_[place(name)];
        return entry.name == name ? entry.number : 0;
    }

  private:
    struct Entry {
        std::uint32_t name = 0;
        unsigned number = 0;
    };

    [[nodiscard]] constexpr std::size_t place(std::uint32_t name) const noexcept { return name * factor_ >> 28U; }

    constexpr bool fill(const std::array<const char*, count>& names) noexcept {
        entries_ = {};
        unsigned number = 0;
        for (const char* const name : names) {
            Entry& entry = entries_[place(packed(name))];
            if (entry.number != 0) return false;
            entry = {packed(name), ++number};
        }
        return true;
    }

    std::uint32_t factor_ = 0x9e3779b1;
    std::array<Entry, 16> entries_{};
};

constexpr NameTable<12> months({"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"});
constexpr NameTable<7> weekdays({"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"});

}  // namespace

std::optional<std::int64_t> parseHTTPDate(std::string_view text) noexcept {
    // Where "Sun, 06 Nov 1994 08:49:37 GMT" has what.
    constexpr std::size_t length = 29;
    if (text.size() != length) return std::nullopt;
    const char* const bytes = text.data();
    bool isBroken = false;
    const auto two = [&](std::size_t place) {
        const unsigned tens = static_cast<unsigned char>(bytes[place]) - unsigned{'0'};
        const unsigned ones = static_cast<unsigned char>(bytes[place + 1]) - unsigned{'0'};
        isBroken |= std::max(tens, ones) > 9;
        return 10 * tens + ones;
    };
    const auto expect = [&](std::size_t place, char c) { isBroken |= bytes[place] != c; };
    expect(3, ',');
    for (const std::size_t blank : {4U, 7U, 11U, 16U, 25U})
        expect(blank, ' ');
    expect(19, ':');
    expect(22, ':');
    const unsigned day = two(5);
    const unsigned year = 100 * two(12) + two(14);
    const unsigned hour = two(17);
    const unsigned minute = two(20);
    const unsigned second = two(23);
    const unsigned month = months.find(bytes + 8);
    const std::uint32_t zone = packed(bytes + 26);
    if (zone != packed("GMT") && zone != packed("UTC")) return std::nullopt;
    if (isBroken || month == 0 || weekdays.find(bytes) == 0 || !civil::isDay(year, month, day)) return std::nullopt;
    const bool isLeapSecond = hour == 23 && minute == 59 && second == 60;
    if (hour > 23 || minute > 59 || (second > 59 && !isLeapSecond)) return std::nullopt;
    return civil::daysFrom(year, month, day) * civil::secondsPerDay + hour * 3600 + minute * 60 + second;
}

}  // namespace corvane
