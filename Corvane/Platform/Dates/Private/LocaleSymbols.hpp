#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <Corvane/Platform/Dates/Locale.hpp>

namespace corvane {

/// The names that a locale has for the parts of a date in the Gregorian calendar.
struct LocaleSymbols {
    using Names = std::vector<std::string>;

    Names months;
    Names shortMonths;
    Names standaloneMonths;
    Names standaloneShortMonths;
    /// From Sunday.
    Names weekdays;
    Names shortWeekdays;
    /// Before and after noon.
    Names dayPeriods;
    /// Whether dates are written with the digits 0 to 9.
    bool hasLatinDigits = true;
    /// Whether dates are Gregorian ones where nobody says otherwise.
    bool hasGregorianCalendar = true;

    /// Of English as the United States write it without any look-up, of others from ICU, once.
    [[nodiscard]] static std::shared_ptr<const LocaleSymbols> of(const Locale& locale);
};

}  // namespace corvane
