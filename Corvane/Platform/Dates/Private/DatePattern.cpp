#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/DatePattern.hpp>
#include <Corvane/Platform/Dates/Private/DatePatternCompiler.hpp>
#include <Corvane/Platform/Dates/Private/DateTextReader.hpp>

namespace corvane {

namespace {

/// The digits of the numbers up to 99, two for each; of the second hundred, those below ten have theirs in front.
constexpr auto twoDigits = [] {
    std::array<char, 400> digits{};
    for (std::size_t number = 0; number < 100; ++number) {
        const auto tens = static_cast<char>('0' + number / 10);
        const auto ones = static_cast<char>('0' + number % 10);
        digits[2 * number] = tens;
        digits[2 * number + 1] = ones;
        digits[200 + 2 * number] = number < 10 ? ones : tens;
        digits[200 + 2 * number + 1] = ones;
    }
    return digits;
}();

char* writeTwo(char* to, unsigned number) noexcept {
    std::memcpy(to, &twoDigits[std::size_t{2} * number], 2);
    return to + 2;
}

/// One or two digits, or always two. There is room for two. Without branches, as nobody foresees hours.
char* writeNumber(char* to, unsigned number, unsigned width) noexcept {
    const std::size_t first = width == 2 ? 0 : 200;
    std::memcpy(to, &twoDigits[first + std::size_t{2} * number], 2);
    return to + 1 + static_cast<std::size_t>(width == 2 || number > 9);
}

char* writeYear(char* to, std::int64_t year, unsigned width) noexcept {
    const auto number = static_cast<unsigned>(year);
    if (number <= 9999 && (width == 4 || number >= 1000)) return writeTwo(writeTwo(to, number / 100), number % 100);
    std::array<char, 12> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), year).ptr;
    const auto length = static_cast<std::size_t>(end - digits.data());
    to = std::fill_n(to, width > length ? width - length : 0, '0');
    return std::copy_n(digits.data(), length, to);
}

}  // namespace

std::optional<DatePattern> DatePattern::compile(std::string_view pattern, const LocaleSymbols& symbols) {
    return DatePatternCompiler(symbols).compile(pattern);
}

std::size_t DatePattern::nameCount(Field field) noexcept {
    if (field == Field::monthName) return 12;
    return field == Field::weekdayName ? 7 : 2;
}

std::string DatePattern::format(Moment local) const {
    std::string text;
    // Of years with more than four digits, no date has more than seven.
    constexpr std::int64_t firstLongYear = 253'402'300'800;
    const bool hasUsualYear = local.seconds < firstLongYear && local.seconds > -firstLongYear;
    const std::size_t most = mostBytes_ + (hasUsualYear ? 0 : 3 * yearFields_);
    const std::size_t room = most + (hasPieces_ ? block : 0);
    // Written in place, unless that took memory which the text alone does not need.
    if (room > text.capacity() && most <= text.capacity()) {
        std::array<char, 64> copied;  // NOLINT(cppcoreguidelines-pro-type-member-init): written from the front
        text.assign(copied.data(), write(copied.data(), local));
        return text;
    }
    text.resize_and_overwrite(room, [&](char* to, std::size_t) { return write(to, local) - to; });
    return text;
}

[[gnu::always_inline]] inline char* DatePattern::append(char* to, Piece piece) const noexcept {
    const char* from = texts_.data() + piece.place;
    if (piece.size == 1) {
        *to = *from;
        return to + 1;
    }
    std::memcpy(to, from, block);
    if (piece.size > block) std::memcpy(to + block, from + block, piece.size - block);
    return to + piece.size;
}

char* DatePattern::write(char* to, Moment local) const noexcept {
    const std::int64_t days = civil::floorDivide(local.seconds, civil::secondsPerDay);
    const auto second = static_cast<unsigned>(local.seconds - days * civil::secondsPerDay);
    const unsigned hour = second / 3600;
    const civil::Day day = hasDate_ ? civil::dayOf(days) : civil::Day{};
    for (const Step& step : steps_) {
        switch (step.field) {
            case Field::month:
                to = writeNumber(to, day.month, step.width);
                break;
            case Field::day:
                to = writeNumber(to, day.day, step.width);
                break;
            case Field::hour0To23:
                to = writeNumber(to, hour, step.width);
                break;
            case Field::hour1To24:
                to = writeNumber(to, hour == 0 ? 24 : hour, step.width);
                break;
            case Field::hour0To11:
                to = writeNumber(to, hour % 12, step.width);
                break;
            case Field::hour1To12:
                to = writeNumber(to, hour % 12 == 0 ? 12 : hour % 12, step.width);
                break;
            case Field::minute:
                to = writeNumber(to, second / 60 % 60, step.width);
                break;
            case Field::second:
                to = writeNumber(to, second % 60, step.width);
                break;
            case Field::year:
                // Counted within its era.
                to = writeYear(to, day.year > 0 ? day.year : 1 - day.year, step.width);
                break;
            case Field::fraction: {
                unsigned rest = local.milliseconds;
                for (unsigned place = 0; place < step.width; ++place, rest = rest % 100 * 10)
                    *to++ = static_cast<char>('0' + rest / 100);
                break;
            }
            case Field::compactDate:
                to = writeYear(to, day.year > 0 ? day.year : 1 - day.year, 4);
                to = writeTwo(writeTwo(to, day.month), day.day);
                break;
            case Field::compactTime:
                to = writeTwo(writeTwo(writeTwo(to, hour), second / 60 % 60), second % 60);
                break;
            case Field::literal:
                to = append(to, pieces_[step.piece]);
                break;
            case Field::monthName:
                to = append(to, pieces_[step.piece + day.month - 1]);
                break;
            case Field::weekdayName:
                to = append(to, pieces_[step.piece + civil::weekday(days) - 1]);
                break;
            case Field::dayPeriod:
                to = append(to, pieces_[step.piece + (hour < 12 ? 0U : 1U)]);
                break;
        }
    }
    return to;
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

/// The index of the longest name that comes next.
unsigned DatePattern::readName(const Step& step, DateTextReader& reader) const noexcept {
    unsigned found = DateTextReader::none;
    std::size_t length = 0;
    for (unsigned index = 0; index < nameCount(step.field); ++index) {
        const std::string_view name = text(pieces_[step.piece + index]);
        if (name.size() <= length || !reader.isAt(name)) continue;
        found = index;
        length = name.size();
    }
    reader.advance(length);
    return found;
}

[[gnu::always_inline]] inline bool DatePattern::parseStep(const Step& step, DateTextReader& reader,
                                                          Parsed& parsed) const noexcept {
    const auto number = [&] { return step.width == 2 ? reader.two() : reader.digitsUpTo(2); };
    switch (step.field) {
        case Field::literal:
            return reader.skip(text(pieces_[step.piece]));
        case Field::year:
            if (step.width == 4) {
                parsed.year = reader.digits(4);
            } else {
                parsed.year = step.width == 1 ? reader.digitsUpTo(7) : reader.digits(step.width);
            }
            return parsed.year - 1 < 5'800'000;
        case Field::month:
            parsed.month = number();
            return parsed.month - 1 <= 11;
        case Field::day:
            parsed.day = number();
            return parsed.day - 1 <= 30;
        case Field::hour0To23:
        case Field::hour1To24:
            parsed.hour = number();
            parsed.isHalfDay = false;
            if (step.field == Field::hour1To24 ? parsed.hour - 1 > 23 : parsed.hour > 23) return false;
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
            const unsigned fraction = reader.digits(step.width);
            if (fraction == DateTextReader::none) return false;
            constexpr std::array<unsigned, 4> scale = {1000, 100, 10, 1};
            parsed.milliseconds = step.width <= 3 ? fraction * scale[step.width] : fraction;
            for (unsigned width = step.width; width > 3; --width)
                parsed.milliseconds /= 10;
            return true;
        }
        case Field::compactDate:
            parsed.year = reader.digits(4);
            parsed.month = reader.two();
            parsed.day = reader.two();
            return parsed.year - 1 < 9999 && parsed.month - 1 <= 11 && parsed.day - 1 <= 30;
        case Field::compactTime:
            parsed.hour = reader.two();
            parsed.isHalfDay = false;
            parsed.minute = reader.two();
            parsed.second = reader.two();
            return parsed.hour <= 23 && parsed.minute <= 59 && parsed.second <= 59;
        case Field::dayPeriod: {
            const unsigned period = readName(step, reader);
            parsed.isAfternoon = period == 1;
            return period != DateTextReader::none;
        }
        case Field::monthName:
            parsed.month = readName(step, reader) + 1;
            return parsed.month != DateTextReader::none + 1;
        case Field::weekdayName:
            return readName(step, reader) != DateTextReader::none;
    }
    return false;
}

bool DatePattern::parse(std::string_view text, Moment& local) const noexcept {
    DateTextReader reader(text);
    Parsed parsed;
    for (const Step& step : steps_) {
        if (!parseStep(step, reader, parsed)) return false;
    }
    if (!reader.isAtEnd() || steps_.empty() || !civil::isDay(parsed.year, parsed.month, parsed.day)) return false;
    const unsigned hour = parsed.hour + (parsed.isHalfDay && parsed.isAfternoon ? 12 : 0);
    local.seconds = civil::daysFrom(parsed.year, parsed.month, parsed.day) * civil::secondsPerDay + hour * 3600 +
                    parsed.minute * 60 + parsed.second;
    local.milliseconds = parsed.milliseconds;
    return true;
}

}  // namespace corvane
