#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <vector>

#include <fmt/compile.h>
#include <fmt/format.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>

#include <Corvane/Platform/Dates/Calendar.hpp>
#include <Corvane/Platform/Dates/DateComponentsFormatter.hpp>

namespace corvane {

namespace {

/// A unit that durations are written in, from large to small.
struct Unit {
    CalendarUnit unit;
    std::optional<std::int64_t> DateComponents::* part;
    icu::MeasureUnit* (*measure)(UErrorCode&);
};

constexpr std::array<Unit, 7> allUnits = {{
    {CalendarUnit::year, &DateComponents::year, icu::MeasureUnit::createYear},
    {CalendarUnit::month, &DateComponents::month, icu::MeasureUnit::createMonth},
    {CalendarUnit::weekOfYear, &DateComponents::weekOfYear, icu::MeasureUnit::createWeek},
    {CalendarUnit::day, &DateComponents::day, icu::MeasureUnit::createDay},
    {CalendarUnit::hour, &DateComponents::hour, icu::MeasureUnit::createHour},
    {CalendarUnit::minute, &DateComponents::minute, icu::MeasureUnit::createMinute},
    {CalendarUnit::second, &DateComponents::second, icu::MeasureUnit::createSecond},
}};

struct Amount {
    const Unit* unit;
    std::int64_t count;
};

using Amounts = std::vector<Amount>;
using Behavior = DateComponentsFormatter::ZeroFormattingBehavior;
using Style = DateComponentsFormatter::UnitsStyle;

void dropZeros(Amounts& amounts, Behavior behavior) {
    const auto isSome = [](const Amount& amount) { return amount.count != 0; };
    if (std::ranges::none_of(amounts, isSome)) {
        // Nothing at all is none of the smallest unit.
        if (behavior != Behavior::pad) amounts.erase(amounts.begin(), amounts.end() - 1);
        return;
    }
    switch (behavior) {
        case Behavior::dropLeading:
            amounts.erase(amounts.begin(), std::ranges::find_if(amounts, isSome));
            break;
        case Behavior::dropTrailing:
            amounts.erase(std::find_if(amounts.rbegin(), amounts.rend(), isSome).base(), amounts.end());
            break;
        case Behavior::dropAll:
            std::erase_if(amounts, std::not_fn(isSome));
            break;
        case Behavior::pad:
            break;
    }
}

std::string positional(const Amounts& amounts, bool isNegative) {
    std::string text = isNegative ? "-" : "";
    fmt::format_to(std::back_inserter(text), FMT_COMPILE("{}"), amounts.front().count);
    for (auto amount = amounts.begin() + 1; amount != amounts.end(); ++amount)
        fmt::format_to(std::back_inserter(text), FMT_COMPILE(":{:02}"), amount->count);
    return text;
}

std::optional<std::string> inWords(const Amounts& amounts, bool isNegative, Style style, const Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    std::vector<icu::Measure> measures;
    for (const Amount& amount : amounts) {
        const bool hasSign = isNegative && measures.empty();
        const icu::Formattable count(hasSign ? -amount.count : amount.count);
        measures.emplace_back(count, amount.unit->measure(status), status);
    }
    UMeasureFormatWidth width = UMEASFMT_WIDTH_WIDE;
    if (style == Style::abbreviated) width = UMEASFMT_WIDTH_NARROW;
    if (style == Style::brief) width = UMEASFMT_WIDTH_SHORT;
    const icu::MeasureFormat format(icu::Locale(locale.identifier().c_str()), width, status);
    icu::UnicodeString words;
    icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
    format.formatMeasures(measures.data(), static_cast<std::int32_t>(measures.size()), words, position, status);
    if (U_FAILURE(status)) return std::nullopt;
    std::string text;
    return words.toUTF8String(text);
}

}  // namespace

std::optional<std::string> DateComponentsFormatter::string(double seconds) const {
    constexpr std::chrono::sys_days start = std::chrono::year(2001) / 1 / 1;
    const Calendar calendar(TimeZone::utc());
    const auto parts = calendar.dateComponents(allowedUnits, start, start + std::chrono::duration<double>(seconds));
    Amounts amounts;
    for (const Unit& unit : allUnits) {
        const auto& count = parts.*unit.part;
        if (count) amounts.push_back({&unit, std::abs(*count)});
    }
    if (amounts.empty()) return std::nullopt;
    const bool isSome = std::ranges::any_of(amounts, [](const Amount& amount) { return amount.count != 0; });
    const bool isNegative = seconds < 0 && isSome;
    const bool isPositional = unitsStyle == UnitsStyle::positional;
    const bool keepsPlaces = isPositional && zeroFormattingBehavior == ZeroFormattingBehavior::dropAll;
    dropZeros(amounts, keepsPlaces ? ZeroFormattingBehavior::dropLeading : zeroFormattingBehavior);
    if (isPositional) return positional(amounts, isNegative);
    return inWords(amounts, isNegative, unitsStyle, locale ? *locale : Locale::current());
}

}  // namespace corvane
