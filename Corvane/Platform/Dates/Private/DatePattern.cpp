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

/// Pieces are copied by so many bytes, as copies of a fixed size are the fastest.
constexpr std::size_t block = 16;

/// What is no number that a text can have.
constexpr unsigned noNumber = std::numeric_limits<unsigned>::max();

}  // namespace

std::optional<DatePattern> DatePattern::compile(std::string_view pattern, const LocaleSymbols& symbols) {
    constexpr std::size_t longest = 1000;
    if (pattern.size() > longest) return std::nullopt;
    DatePattern compiled;
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
            compiled.addLiteral(std::exchange(literal, {}));
            if (!compiled.addField(c, width, symbols)) return std::nullopt;
            place += width;
        }
    }
    compiled.addLiteral(literal);
    if (isQuoted || compiled.texts_.size() > std::numeric_limits<std::uint16_t>::max()) return std::nullopt;
    compiled.texts_.append(block, '\0');
    return compiled;
}

bool DatePattern::addField(char letter, std::size_t width, const LocaleSymbols& symbols) {
    const auto add = [&](Field field, std::size_t mostWidth, std::size_t usualWidth = 2) {
        if (width > mostWidth) return false;
        steps_.push_back({field, static_cast<std::uint8_t>(width), 0});
        fuse();
        mostBytes_ += std::max(width, usualWidth);
        return true;
    };
    switch (letter) {
        case 'y':
            hasDate_ = true;
            // Of two digits, which century is meant is ICU's business.
            if (width == 2) return false;
            ++yearFields_;
            return add(Field::year, 9, 4);
        case 'M':
        case 'L': {
            hasDate_ = true;
            if (width <= 2) return add(Field::month, 2);
            const bool standsAlone = letter == 'L';
            if (width == 3)
                return addNames(Field::monthName, standsAlone ? symbols.standaloneShortMonths : symbols.shortMonths);
            return width == 4 && addNames(Field::monthName, standsAlone ? symbols.standaloneMonths : symbols.months);
        }
        case 'd':
            hasDate_ = true;
            return add(Field::day, 2);
        case 'E':
            return width <= 4 && addNames(Field::weekdayName, width == 4 ? symbols.weekdays : symbols.shortWeekdays);
        case 'a':
            return width <= 3 && addNames(Field::dayPeriod, symbols.dayPeriods);
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

void DatePattern::fuse() {
    // What machines write has no gaps: "yyyyMMdd" and "HHmmss" take one step each.
    if (steps_.size() < 3) return;
    const std::span<const Step> last = std::span(steps_).last(3);
    const auto are = [&](Field first, unsigned width, Field second, Field third) {
        return last[0].field == first && last[0].width == width && last[1].field == second && last[1].width == 2 &&
               last[2].field == third && last[2].width == 2;
    };
    std::optional<Field> fused;
    if (are(Field::year, 4, Field::month, Field::day)) fused = Field::compactDate;
    if (are(Field::hour0To23, 2, Field::minute, Field::second)) fused = Field::compactTime;
    if (!fused) return;
    steps_.resize(steps_.size() - 3);
    steps_.push_back({*fused, 0, 0});
}

void DatePattern::addPiece(std::string_view text) {
    hasPieces_ |= text.size() != 1;
    pieces_.push_back({static_cast<std::uint16_t>(texts_.size()), static_cast<std::uint16_t>(text.size())});
    texts_ += text;
}

void DatePattern::addLiteral(std::string_view text) {
    if (text.empty()) return;
    steps_.push_back({Field::literal, 0, static_cast<std::uint16_t>(pieces_.size())});
    addPiece(text);
    mostBytes_ += text.size();
}

bool DatePattern::addNames(Field field, const LocaleSymbols::Names& names) {
    if (names.size() != nameCount(field)) return false;
    steps_.push_back({field, 0, static_cast<std::uint16_t>(pieces_.size())});
    for (const std::string& name : names)
        addPiece(name);
    mostBytes_ += std::ranges::max(names, {}, &std::string::size).size();
    return true;
}

std::size_t DatePattern::nameCount(Field field) noexcept {
    if (field == Field::monthName) return 12;
    return field == Field::weekdayName ? 7 : 2;
}

std::span<const DatePattern::Piece> DatePattern::names(const Step& step) const noexcept {
    return std::span(pieces_).subspan(step.piece, nameCount(step.field));
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

/// A text from the front.
class DatePattern::Reader {
  public:
    explicit Reader(std::string_view text) noexcept : at_(text.data()), end_(text.data() + text.size()) {}

    [[nodiscard]] bool isAtEnd() const noexcept { return at_ == end_; }

    [[gnu::always_inline]] bool skip(std::string_view literal) noexcept {
        if (left() < literal.size()) return false;
        for (std::size_t place = 0; place < literal.size(); ++place) {
            if (at_[place] != literal[place]) return false;
        }
        at_ += literal.size();
        return true;
    }

    /// Exactly two digits.
    [[gnu::always_inline]] unsigned two() noexcept {
        if (left() < 2) return noNumber;
        const unsigned tens = digit(0);
        const unsigned ones = digit(1);
        at_ += 2;
        return std::max(tens, ones) > 9 ? noNumber : 10 * tens + ones;
    }

    /// Exactly `width` digits.
    [[gnu::always_inline]] unsigned digits(std::size_t width) noexcept {
        if (left() < width) return noNumber;
        unsigned number = 0;
        unsigned greatest = 0;
        for (std::size_t place = 0; place < width; ++place) {
            greatest = std::max(greatest, digit(place));
            number = 10 * number + digit(place);
        }
        at_ += width;
        return greatest > 9 ? noNumber : number;
    }

    /// As many digits as there are, `most` of them at most.
    unsigned digitsUpTo(std::size_t most) noexcept {
        std::size_t width = 0;
        while (width < most && width < left() && digit(width) <= 9)
            ++width;
        return width == 0 ? noNumber : digits(width);
    }

    /// The index of the longest name that comes next, in whatever case ASCII letters are.
    unsigned name(std::span<const Piece> names, std::string_view texts) noexcept {
        unsigned found = noNumber;
        std::size_t length = 0;
        for (unsigned index = 0; index < names.size(); ++index) {
            const Piece piece = names[index];
            if (piece.size <= length || piece.size > left()) continue;
            const std::string_view name = texts.substr(piece.place, piece.size);
            if (!std::ranges::equal(name, std::string_view(at_, piece.size), {}, lowerCase, lowerCase)) continue;
            found = index;
            length = piece.size;
        }
        at_ += length;
        return found;
    }

  private:
    [[nodiscard]] std::size_t left() const noexcept { return static_cast<std::size_t>(end_ - at_); }

    /// More than nine for what is no digit.
    [[nodiscard]] unsigned digit(std::size_t place) const noexcept {
        return static_cast<unsigned char>(at_[place]) - unsigned{'0'};
    }

    const char* at_;
    const char* end_;
};

[[gnu::always_inline]] inline bool DatePattern::parseStep(const Step& step, Reader& reader,
                                                          Parsed& parsed) const noexcept {
    const auto number = [&] { return step.width == 2 ? reader.two() : reader.digitsUpTo(2); };
    switch (step.field) {
        case Field::literal:
            return reader.skip(std::string_view(texts_).substr(pieces_[step.piece].place, pieces_[step.piece].size));
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
            if (fraction == noNumber) return false;
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
            const unsigned period = reader.name(names(step), texts_);
            parsed.isAfternoon = period == 1;
            return period != noNumber;
        }
        case Field::monthName:
            parsed.month = reader.name(names(step), texts_) + 1;
            return parsed.month != noNumber + 1;
        case Field::weekdayName:
            return reader.name(names(step), texts_) != noNumber;
    }
    return false;
}

bool DatePattern::parse(std::string_view text, Moment& local) const noexcept {
    Reader reader(text);
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
