#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <utility>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/DatePattern.hpp>

namespace corvane {

namespace {

constexpr bool isLetter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr char lowerCase(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr auto twoDigits = [] {
    std::array<char, 200> digits{};
    for (std::size_t number = 0; number < 100; ++number) {
        digits[2 * number] = static_cast<char>('0' + number / 10);
        digits[2 * number + 1] = static_cast<char>('0' + number % 10);
    }
    return digits;
}();

char* writeTwo(char* to, unsigned number) noexcept {
    std::memcpy(to, &twoDigits[std::size_t{2} * number], 2);
    return to + 2;
}

/// One or two digits, or always two.
char* write(char* to, unsigned number, unsigned width) noexcept {
    if (width == 2 || number > 9) return writeTwo(to, number);
    *to = static_cast<char>('0' + number);
    return to + 1;
}

char* writeYear(char* to, std::int64_t year, unsigned width) noexcept {
    const auto number = static_cast<unsigned>(year);
    if (width == 4 && year <= 9999) return writeTwo(writeTwo(to, number / 100), number % 100);
    std::array<char, 12> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), year).ptr;
    const auto length = static_cast<std::size_t>(end - digits.data());
    to = std::fill_n(to, width > length ? width - length : 0, '0');
    return std::copy_n(digits.data(), length, to);
}

/// Exactly `width` digits from the front; none is given by a number too large to be one.
constexpr unsigned noNumber = std::numeric_limits<unsigned>::max();

unsigned takeDigits(std::string_view& rest, std::size_t width) noexcept {
    if (rest.size() < width) return noNumber;
    unsigned number = 0;
    for (std::size_t place = 0; place < width; ++place) {
        const unsigned digit = static_cast<unsigned char>(rest[place]) - unsigned{'0'};
        if (digit > 9) return noNumber;
        number = 10 * number + digit;
    }
    rest.remove_prefix(width);
    return number;
}

/// As many digits as there are, `most` of them at most.
unsigned takeUpTo(std::string_view& rest, std::size_t most) noexcept {
    std::size_t width = 0;
    while (width < most && width < rest.size() && rest[width] >= '0' && rest[width] <= '9')
        ++width;
    return width == 0 ? noNumber : takeDigits(rest, width);
}

/// The index of the longest name that the text begins with, in whatever case ASCII letters are.
unsigned takeName(std::string_view& rest, const LocaleSymbols::Names& names) noexcept {
    unsigned found = noNumber;
    std::size_t length = 0;
    for (unsigned index = 0; index < names.size(); ++index) {
        const std::string& name = names[index];
        const bool isFound =
            name.size() > length && std::ranges::equal(name, rest.substr(0, name.size()), {}, lowerCase, lowerCase);
        if (isFound) {
            found = index;
            length = name.size();
        }
    }
    rest.remove_prefix(length);
    return found;
}

}  // namespace

std::optional<DatePattern> DatePattern::compile(std::string_view pattern,
                                                std::shared_ptr<const LocaleSymbols> symbols) {
    DatePattern compiled;
    compiled.symbols_ = std::move(symbols);
    bool isQuoted = false;
    std::string literal;
    for (std::size_t place = 0; place < pattern.size();) {
        const char c = pattern[place];
        if (c == '\'') {
            // Two of them are one, inside of a quotation as outside.
            const bool isDoubled = pattern.substr(place + 1).starts_with('\'');
            if (isDoubled) literal += '\'';
            isQuoted ^= !isDoubled;
            place += isDoubled ? 2 : 1;
        } else if (isQuoted || !isLetter(c)) {
            literal += c;
            ++place;
        } else {
            const std::size_t width = std::min(pattern.find_first_not_of(c, place), pattern.size()) - place;
            if (!compiled.addLiteral(std::exchange(literal, {})) || !compiled.addField(c, width)) return std::nullopt;
            place += width;
        }
    }
    if (isQuoted || !compiled.addLiteral(literal)) return std::nullopt;
    return compiled;
}

bool DatePattern::addField(char letter, std::size_t width) {
    const auto add = [&](Field field, std::size_t mostWidth) {
        if (width > mostWidth) return false;
        steps_.push_back({field, static_cast<std::uint8_t>(width), 0});
        mostBytes_ += std::max<std::size_t>(width, 2);
        return true;
    };
    switch (letter) {
        case 'y':
            hasDate_ = true;
            // Of two digits, which century is meant is ICU's business.
            if (width == 2) return false;
            mostBytes_ += 8;
            return add(Field::year, 9);
        case 'M':
        case 'L': {
            hasDate_ = true;
            if (width <= 2) return add(Field::month, 2);
            if (width > 4) return false;
            const bool standsAlone = letter == 'L';
            if (width == 3) {
                addNames(Field::monthName, standsAlone ? symbols_->standaloneShortMonths : symbols_->shortMonths);
            } else {
                addNames(Field::monthName, standsAlone ? symbols_->standaloneMonths : symbols_->months);
            }
            return true;
        }
        case 'd':
            hasDate_ = true;
            return add(Field::day, 2);
        case 'E':
            if (width > 4) return false;
            addNames(Field::weekdayName, width == 4 ? symbols_->weekdays : symbols_->shortWeekdays);
            return true;
        case 'a':
            if (width > 3) return false;
            addNames(Field::dayPeriod, symbols_->dayPeriods);
            return true;
        case 'H':
            return add(Field::hour0To23, 2);
        case 'k':
            return add(Field::hour1To24, 2);
        case 'K':
            return add(Field::hour0To11, 2);
        case 'h':
            return add(Field::hour1To12, 2);
        case 'm':
            return add(Field::minute, 2);
        case 's':
            return add(Field::second, 2);
        case 'S':
            hasFraction_ = true;
            return add(Field::fraction, 9);
        default:
            return false;
    }
}

bool DatePattern::addLiteral(std::string_view text) {
    for (; !text.empty();) {
        const auto part = text.substr(0, std::numeric_limits<std::uint8_t>::max());
        if (literals_.size() > std::numeric_limits<std::uint16_t>::max()) return false;
        steps_.push_back(
            {Field::literal, static_cast<std::uint8_t>(part.size()), static_cast<std::uint16_t>(literals_.size())});
        literals_ += part;
        mostBytes_ += part.size();
        text.remove_prefix(part.size());
    }
    return true;
}

void DatePattern::addNames(Field field, const LocaleSymbols::Names& names) {
    steps_.push_back({field, 0, static_cast<std::uint16_t>(names_.size())});
    names_.push_back(&names);
    mostBytes_ += std::ranges::max(names, {}, &std::string::size).size();
}

DatePattern::Moment DatePattern::moment(double seconds) const noexcept {
    if (!hasFraction_) return {civil::floorSeconds(seconds), 0};
    // Multiplied first: the fraction alone would show the last digit one too low.
    const std::int64_t total = civil::floorSeconds(seconds * 1000);
    const std::int64_t whole = civil::floorDivide(total, 1000);
    return {whole, static_cast<unsigned>(total - whole * 1000)};
}

std::string DatePattern::format(Moment local) const {
    const std::int64_t days = civil::floorDivide(local.seconds, civil::secondsPerDay);
    const auto second = static_cast<unsigned>(local.seconds - days * civil::secondsPerDay);
    const unsigned hour = second / 3600;
    civil::Day day{};
    if (hasDate_) {
        day = civil::dayOf(days);
        // Years are counted within their era.
        if (day.year <= 0) day.year = 1 - day.year;
    }

    std::array<char, 96> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): written from the front
    std::string large;
    if (mostBytes_ > buffer.size()) large.resize(mostBytes_);
    char* const start = large.empty() ? buffer.data() : large.data();
    char* to = start;
    const auto writeName = [&](const Step& step, unsigned index) {
        const std::string& name = (*names_[step.place])[index];
        to = std::copy_n(name.data(), name.size(), to);
    };
    for (const Step& step : steps_) {
        switch (step.field) {
            case Field::literal:
                to = std::copy_n(literals_.data() + step.place, step.width, to);
                break;
            case Field::year:
                to = writeYear(to, day.year, step.width);
                break;
            case Field::month:
                to = write(to, day.month, step.width);
                break;
            case Field::day:
                to = write(to, day.day, step.width);
                break;
            case Field::hour0To23:
                to = write(to, hour, step.width);
                break;
            case Field::hour1To24:
                to = write(to, hour == 0 ? 24 : hour, step.width);
                break;
            case Field::hour0To11:
                to = write(to, hour % 12, step.width);
                break;
            case Field::hour1To12:
                to = write(to, hour % 12 == 0 ? 12 : hour % 12, step.width);
                break;
            case Field::minute:
                to = write(to, second / 60 % 60, step.width);
                break;
            case Field::second:
                to = write(to, second % 60, step.width);
                break;
            case Field::fraction: {
                unsigned rest = local.milliseconds;
                for (unsigned place = 0; place < step.width; ++place, rest = rest % 100 * 10)
                    *to++ = static_cast<char>('0' + rest / 100);
                break;
            }
            case Field::dayPeriod:
                writeName(step, hour < 12 ? 0 : 1);
                break;
            case Field::monthName:
                writeName(step, day.month - 1);
                break;
            case Field::weekdayName:
                writeName(step, civil::weekday(days) - 1);
                break;
        }
    }
    return {start, to};
}

/// The first of January 1970, until the text says otherwise.
struct DatePattern::Parsed {
    unsigned year = 1970;
    unsigned month = 1;
    unsigned day = 1;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    unsigned milliseconds = 0;
    bool isAfternoon = false;
    bool isHalfDay = false;
};

bool DatePattern::parseStep(const Step& step, std::string_view& rest, Parsed& parsed) const noexcept {
    const auto number = [&] { return step.width == 2 ? takeDigits(rest, 2) : takeUpTo(rest, 2); };
    switch (step.field) {
        case Field::literal:
            if (!rest.starts_with(std::string_view(literals_).substr(step.place, step.width))) return false;
            rest.remove_prefix(step.width);
            return true;
        case Field::year:
            parsed.year = step.width == 1 ? takeUpTo(rest, 7) : takeDigits(rest, step.width);
            return parsed.year - 1 < 5'800'000;
        case Field::month:
            parsed.month = number();
            return parsed.month - 1 <= 11;
        case Field::day:
            parsed.day = number();
            return parsed.day - 1 <= 30;
        case Field::hour0To23:
            parsed.hour = number();
            return parsed.hour <= 23;
        case Field::hour1To24:
            parsed.hour = number();
            if (parsed.hour - 1 > 23) return false;
            parsed.hour %= 24;
            return true;
        case Field::hour0To11:
        case Field::hour1To12:
            parsed.hour = number();
            parsed.isHalfDay = true;
            if (step.field == Field::hour1To12 ? parsed.hour - 1 > 11 : parsed.hour > 11) return false;
            parsed.hour %= 12;
            return true;
        case Field::minute:
            parsed.minute = number();
            return parsed.minute <= 59;
        case Field::second:
            parsed.second = number();
            return parsed.second <= 59;
        case Field::fraction: {
            const unsigned fraction = takeDigits(rest, step.width);
            if (fraction == noNumber) return false;
            constexpr std::array<unsigned, 4> scale = {1000, 100, 10, 1};
            parsed.milliseconds = step.width <= 3 ? fraction * scale[step.width] : fraction;
            for (unsigned width = step.width; width > 3; --width)
                parsed.milliseconds /= 10;
            return true;
        }
        case Field::dayPeriod: {
            const unsigned period = takeName(rest, *names_[step.place]);
            parsed.isAfternoon = period == 1;
            return period != noNumber;
        }
        case Field::monthName:
            parsed.month = takeName(rest, *names_[step.place]) + 1;
            return parsed.month != noNumber + 1;
        case Field::weekdayName:
            return takeName(rest, *names_[step.place]) != noNumber;
    }
    return false;
}

std::optional<DatePattern::Moment> DatePattern::parse(std::string_view text) const noexcept {
    Parsed parsed;
    for (const Step& step : steps_) {
        if (!parseStep(step, text, parsed)) return std::nullopt;
    }
    if (!text.empty() || steps_.empty() || !civil::isDay(parsed.year, parsed.month, parsed.day)) return std::nullopt;
    const unsigned hour = parsed.hour + (parsed.isHalfDay && parsed.isAfternoon ? 12 : 0);
    const std::int64_t seconds = civil::daysFrom(parsed.year, parsed.month, parsed.day) * civil::secondsPerDay +
                                 hour * 3600 + parsed.minute * 60 + parsed.second;
    return Moment{seconds, parsed.milliseconds};
}

}  // namespace corvane
