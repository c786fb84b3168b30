#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Platform/Dates/Calendar.hpp>
#include <Corvane/Platform/Dates/Locale.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane {

/// A pattern of date fields as ICU understands it, for what `DatePattern` does not cover. Slow; any thread, one at a
/// time.
///
/// Offsets come from our zones, not from those that ICU carries; it is asked for the names of zones alone.
class ICUPattern {
  public:
    /// Without a calendar, the one that the locale's people use.
    ICUPattern(std::string_view pattern, const Locale& locale, const std::optional<Calendar>& calendar);
    ~ICUPattern();
    ICUPattern(const ICUPattern&) = delete;
    ICUPattern& operator=(const ICUPattern&) = delete;

    /// Empty when ICU cannot make sense of the pattern.
    [[nodiscard]] std::string format(double seconds, const TimeZone& zone) const;

    [[nodiscard]] std::optional<double> parse(std::string_view text, const TimeZone& zone) const;

  private:
    struct Engine;

    std::unique_ptr<Engine> engine_;
};

}  // namespace corvane
