#include <algorithm>
#include <limits>
#include <span>
#include <utility>

#include <Corvane/Platform/Dates/Private/DatePatternCompiler.hpp>

namespace corvane {

namespace {

constexpr bool isLetter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

std::optional<DatePattern> DatePatternCompiler::compile(std::string_view pattern) {
    constexpr std::size_t longest = 1000;
    if (pattern.size() > longest) return std::nullopt;
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
            addLiteral(std::exchange(literal, {}));
            if (!addField(c, width)) return std::nullopt;
            place += width;
        }
    }
    addLiteral(literal);
    if (isQuoted || compiled_.texts_.size() > std::numeric_limits<std::uint16_t>::max()) return std::nullopt;
    compiled_.texts_.append(DatePattern::block, '\0');
    return std::move(compiled_);
}

bool DatePatternCompiler::addField(char letter, std::size_t width) {
    const auto add = [&](Field field, std::size_t mostWidth, std::size_t usualWidth = 2) {
        if (width > mostWidth) return false;
        compiled_.steps_.push_back({field, static_cast<std::uint8_t>(width), 0});
        fuse();
        compiled_.mostBytes_ += std::max(width, usualWidth);
        return true;
    };
    switch (letter) {
        case 'y':
            compiled_.hasDate_ = true;
            // Of two digits, which century is meant is ICU's business.
            if (width == 2) return false;
            ++compiled_.yearFields_;
            return add(Field::year, 9, 4);
        case 'M':
        case 'L': {
            compiled_.hasDate_ = true;
            if (width <= 2) return add(Field::month, 2);
            const bool standsAlone = letter == 'L';
            if (width == 3)
                return addNames(Field::monthName, standsAlone ? symbols_.standaloneShortMonths : symbols_.shortMonths);
            return width == 4 && addNames(Field::monthName, standsAlone ? symbols_.standaloneMonths : symbols_.months);
        }
        case 'd':
            compiled_.hasDate_ = true;
            return add(Field::day, 2);
        case 'E':
            return width <= 4 && addNames(Field::weekdayName, width == 4 ? symbols_.weekdays : symbols_.shortWeekdays);
        case 'a':
            return width <= 3 && addNames(Field::dayPeriod, symbols_.dayPeriods);
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
            compiled_.hasFraction_ = true;
            return add(Field::fraction, 9);
        default:
            return false;
    }
}

void DatePatternCompiler::fuse() {
    // What machines write has no gaps: "yyyyMMdd" and "HHmmss" take one step each.
    if (compiled_.steps_.size() < 3) return;
    const std::span<const DatePattern::Step> last = std::span(compiled_.steps_).last(3);
    const auto are = [&](Field first, unsigned width, Field second, Field third) {
        return last[0].field == first && last[0].width == width && last[1].field == second && last[1].width == 2 &&
               last[2].field == third && last[2].width == 2;
    };
    std::optional<Field> fused;
    if (are(Field::year, 4, Field::month, Field::day)) fused = Field::compactDate;
    if (are(Field::hour0To23, 2, Field::minute, Field::second)) fused = Field::compactTime;
    if (!fused) return;
    compiled_.steps_.resize(compiled_.steps_.size() - 3);
    compiled_.steps_.push_back({*fused, 0, 0});
}

void DatePatternCompiler::addPiece(std::string_view text) {
    compiled_.hasPieces_ |= text.size() != 1;
    compiled_.pieces_.push_back(
        {static_cast<std::uint16_t>(compiled_.texts_.size()), static_cast<std::uint16_t>(text.size())});
    compiled_.texts_ += text;
}

void DatePatternCompiler::addLiteral(std::string_view text) {
    if (text.empty()) return;
    compiled_.steps_.push_back({Field::literal, 0, static_cast<std::uint16_t>(compiled_.pieces_.size())});
    addPiece(text);
    compiled_.mostBytes_ += text.size();
}

bool DatePatternCompiler::addNames(Field field, const LocaleSymbols::Names& names) {
    if (names.size() != DatePattern::nameCount(field)) return false;
    compiled_.steps_.push_back({field, 0, static_cast<std::uint16_t>(compiled_.pieces_.size())});
    for (const std::string& name : names)
        addPiece(name);
    compiled_.mostBytes_ += std::ranges::max(names, {}, &std::string::size).size();
    return true;
}

}  // namespace corvane
