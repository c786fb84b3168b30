#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Calendar.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Dates/Locale.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane {

/// Writes instants as texts of one form, and reads such texts.
///
///     DateFormatter formatter("H:mm, d MMMM yyyy", Locale("en_US"), TimeZone::utc());
///     formatter.string(kickOff);  // "19:30, 15 March 2024"
///
/// The form is a pattern of date fields (UTS #35, part 4, section 8). A field that is not set follows the device: its
/// locale, and the zone that is current at each call. Making a formatter compiles its pattern, so keep those you use
/// often. Constant operations are for any thread, also on one shared formatter; a value, free to copy.
///
/// Reading is strict. Fields of two or more digits ("HH", "yyyy") have exactly as many, single ones ("d", "y") as many
/// as there are (two, or seven of a year); names are those of the locale, in any case of ASCII letters; everything
/// else stands as in the pattern, with nothing before or behind. The day has to exist: no 30th of February, no year 0.
/// Weekdays are not held against the date. What the pattern leaves out is that of 1970-01-01, 0:00. Clock times that
/// come twice or never are taken as `Calendar` takes them.
class CORVANE_EXPORT DateFormatter {
  public:
    /// A formatter with an empty pattern, which writes empty texts and reads none.
    DateFormatter() : DateFormatter(std::string_view()) {}

    explicit DateFormatter(std::string_view dateFormat, std::optional<Locale> locale = std::nullopt,
                           std::optional<TimeZone> zone = std::nullopt);

    // Not moved: a formatter that has been moved from still works.
    DateFormatter(const DateFormatter&) = default;
    DateFormatter& operator=(const DateFormatter&) = default;
    ~DateFormatter() = default;

    /// The one formatter of HTTP dates, whatever the device's locale and zone: the pattern "EEE, dd MMM yyyy HH:mm:ss
    /// z" in the locale "en_US_POSIX" and at GMT, which is the preferred form of RFC 9110, section 5.6.7: "Sun, 06 Nov
    /// 1994 08:49:37 GMT".
    ///
    /// When it reads, every digit has to be there and names are in the case of the RFC. "UTC" is taken for "GMT", and a
    /// leap second, 23:59:60, for the second after it.
    [[nodiscard]] static const DateFormatter& httpDate();

    [[nodiscard]] const std::string& dateFormat() const noexcept { return dateFormat_; }

    void setDateFormat(std::string_view dateFormat);

    [[nodiscard]] const Locale& locale() const { return locale_ ? *locale_ : Locale::current(); }

    void setLocale(std::optional<Locale> locale);

    /// Absent unless it was set. Dates are then those of the calendar that the locale's people use.
    [[nodiscard]] const std::optional<Calendar>& calendar() const noexcept { return calendar_; }

    /// How dates are counted. The calendar's zone is not looked at.
    void setCalendar(std::optional<Calendar> calendar);

    [[nodiscard]] TimeZone timeZone() const { return zone_ ? *zone_ : TimeZone::current(); }

    void setTimeZone(std::optional<TimeZone> zone) noexcept { zone_ = zone; }

    /// The text of an instant, which is cut down to the smallest field. Empty for what has no date.
    [[nodiscard]] std::string string(Date date) const;

    /// The instant that the text means; absent when the text is absent or is not exactly of the form.
    [[nodiscard]] std::optional<Date> date(std::optional<std::string_view> text) const {
        // Inline, as returning an optional from afar takes longer than reading some dates.
        double seconds = 0;
        if (!text || !read(*text, seconds)) return std::nullopt;
        return Date(std::chrono::duration<double>(seconds));
    }

  private:
    struct Form;

    void compile();
    [[nodiscard]] bool read(std::string_view text, double& seconds) const;
    [[nodiscard]] bool readForm(std::string_view text, double& seconds) const;

    std::string dateFormat_;
    std::optional<Locale> locale_;
    std::optional<Calendar> calendar_;
    std::optional<TimeZone> zone_;
    std::shared_ptr<const Form> form_;
};

}  // namespace corvane
