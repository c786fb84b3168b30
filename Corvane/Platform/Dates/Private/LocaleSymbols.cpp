#include <cstdint>
#include <map>
#include <mutex>
#include <span>
#include <string_view>
#include <utility>

#include <unicode/calendar.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/numsys.h>
#include <unicode/unistr.h>

#include <Corvane/Platform/Dates/Private/LocaleSymbols.hpp>

namespace corvane {

namespace {

/// More locales than an application shows; beyond, names are looked up each time.
constexpr std::size_t mostKept = 64;

LocaleSymbols english() {
    LocaleSymbols symbols;
    symbols.months = {"January", "February", "March",     "April",   "May",      "June",
                      "July",    "August",   "September", "October", "November", "December"};
    symbols.weekdays = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    for (const std::string& month : symbols.months)
        symbols.shortMonths.push_back(month.substr(0, 3));
    for (const std::string& weekday : symbols.weekdays)
        symbols.shortWeekdays.push_back(weekday.substr(0, 3));
    symbols.standaloneMonths = symbols.months;
    symbols.standaloneShortMonths = symbols.shortMonths;
    symbols.dayPeriods = {"AM", "PM"};
    return symbols;
}

LocaleSymbols::Names names(const icu::UnicodeString* texts, std::int32_t count, std::size_t from = 0) {
    LocaleSymbols::Names names;
    for (const icu::UnicodeString& text : std::span(texts, static_cast<std::size_t>(count)).subspan(from))
        text.toUTF8String(names.emplace_back());
    return names;
}

LocaleSymbols fromICU(const Locale& locale) {
    using Symbols = icu::DateFormatSymbols;
    const icu::Locale name(locale.identifier().c_str());
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(name, status));
    const std::unique_ptr<icu::NumberingSystem> digits(icu::NumberingSystem::createInstance(name, status));
    icu::Locale gregorian = name;
    gregorian.setKeywordValue("calendar", "gregorian", status);
    const Symbols found(gregorian, status);
    // ICU without its data; English is better than nothing.
    if (U_FAILURE(status)) return english();

    LocaleSymbols symbols;
    std::int32_t count = 0;
    const auto months = [&](Symbols::DtContextType context, Symbols::DtWidthType width) {
        const auto* const texts = found.getMonths(count, context, width);
        return names(texts, count);
    };
    const auto weekdays = [&](Symbols::DtWidthType width) {
        const auto* const texts = found.getWeekdays(count, Symbols::FORMAT, width);
        return names(texts, count, 1);
    };
    symbols.months = months(Symbols::FORMAT, Symbols::WIDE);
    symbols.shortMonths = months(Symbols::FORMAT, Symbols::ABBREVIATED);
    symbols.standaloneMonths = months(Symbols::STANDALONE, Symbols::WIDE);
    symbols.standaloneShortMonths = months(Symbols::STANDALONE, Symbols::ABBREVIATED);
    symbols.weekdays = weekdays(Symbols::WIDE);
    symbols.shortWeekdays = weekdays(Symbols::ABBREVIATED);
    const auto* const periods = found.getAmPmStrings(count);
    symbols.dayPeriods = names(periods, count);
    symbols.hasLatinDigits = std::string_view(digits->getName()) == "latn";
    symbols.hasGregorianCalendar = std::string_view(calendar->getType()) == "gregorian";
    return symbols;
}

}  // namespace

std::shared_ptr<const LocaleSymbols> LocaleSymbols::of(const Locale& locale) {
    static const auto& built = *new std::shared_ptr<const LocaleSymbols>(std::make_shared<LocaleSymbols>(english()));
    const std::string& name = locale.identifier();
    if (name == "en_US" || name == "en_US_POSIX" || name == "en") return built;

    static auto& kept = *new std::pair<std::mutex, std::map<std::string, std::shared_ptr<const LocaleSymbols>>>;
    const std::lock_guard lock(kept.first);
    if (const auto found = kept.second.find(name); found != kept.second.end()) return found->second;
    auto symbols = std::make_shared<const LocaleSymbols>(fromICU(locale));
    if (kept.second.size() < mostKept) kept.second.emplace(name, symbols);
    return symbols;
}

}  // namespace corvane
