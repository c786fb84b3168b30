#include <algorithm>
#include <mutex>

#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/uchar.h>

#include <Corvane/Platform/Dates/Private/ICUPattern.hpp>
#include <Corvane/Platform/Dates/Private/ZoneAccess.hpp>

namespace corvane {

namespace {

/// Which of the letters stand in the pattern outside of quotations.
bool hasField(std::string_view pattern, std::string_view letters) noexcept {
    bool isQuoted = false;
    for (const char c : pattern) {
        if (c == '\'') isQuoted = !isQuoted;
        if (!isQuoted && letters.find(c) != std::string_view::npos) return true;
    }
    return false;
}

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

/// How many things that are so stand one after the other at most.
template <class Is>
int longestRun(const icu::UnicodeString& text, Is is) {
    int longest = 0;
    int run = 0;
    for (std::int32_t place = 0; place < text.length(); place = text.moveIndex32(place, 1)) {
        run = is(text.char32At(place)) ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

std::unique_ptr<icu::TimeZone> fixedZone(std::int32_t offset) {
    const auto zone = TimeZone::withSecondsFromGMT(offset);
    return std::make_unique<icu::SimpleTimeZone>(offset * 1000, unicode(zone ? zone->identifier() : "GMT"));
}

/// The zone under the name that ICU knows it by, if it does and counts as we do at that instant.
std::unique_ptr<icu::TimeZone> namedZone(const TimeZone& zone, double milliseconds, std::int32_t offset) {
    std::unique_ptr<icu::TimeZone> named(icu::TimeZone::createTimeZone(unicode(zone.identifier())));
    std::int32_t standard = 0;
    std::int32_t saving = 0;
    UErrorCode status = U_ZERO_ERROR;
    named->getOffset(milliseconds, 0, standard, saving, status);
    if (U_FAILURE(status) || standard + saving != offset * 1000) return fixedZone(offset);
    return named;
}

std::unique_ptr<icu::Calendar> makeCalendar(const icu::Locale& locale, const std::optional<Calendar>& calendar,
                                            UErrorCode& status) {
    if (!calendar) return std::unique_ptr<icu::Calendar>(icu::Calendar::createInstance(locale, status));
    auto gregorian = std::make_unique<icu::GregorianCalendar>(locale, status);
    gregorian->setFirstDayOfWeek(static_cast<UCalendarDaysOfWeek>(calendar->firstWeekday()));
    gregorian->setMinimalDaysInFirstWeek(static_cast<std::uint8_t>(calendar->minimumDaysInFirstWeek()));
    return gregorian;
}

}  // namespace

struct ICUPattern::Engine {
    std::mutex mutex;
    std::unique_ptr<icu::SimpleDateFormat> format;
    /// How many digits there may be together. ICU 72 counts the digits of a fraction in 32 bits: beyond twelve, it
    /// reads another number, and beyond 34, it divides by zero.
    int mostDigits = 12;
    bool showsZone = false;
    bool namesZone = false;
};

ICUPattern::ICUPattern(std::string_view pattern, const Locale& locale, const std::optional<Calendar>& calendar)
    : engine_(std::make_unique<Engine>()) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale name(locale.identifier().c_str());
    auto made = makeCalendar(name, calendar, status);
    auto format = std::make_unique<icu::SimpleDateFormat>(unicode(pattern), name, status);
    if (U_FAILURE(status)) return;
    made->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    format->adoptCalendar(made.release());
    format->setLenient(false);
    format->setBooleanAttribute(UDAT_PARSE_PARTIAL_LITERAL_MATCH, false, status);
    format->setBooleanAttribute(UDAT_PARSE_MULTIPLE_PATTERNS_FOR_MATCH, false, status);
    engine_->format = std::move(format);
    engine_->mostDigits = std::max(engine_->mostDigits, longestRun(unicode(pattern), u_isalpha));
    engine_->showsZone = hasField(pattern, "zZOvVXx");
    engine_->namesZone = hasField(pattern, "zvV");
}

ICUPattern::~ICUPattern() = default;

std::string ICUPattern::format(double seconds, const TimeZone& zone) const {
    std::string text;
    const std::lock_guard lock(engine_->mutex);
    if (!engine_->format) return text;
    const double milliseconds = seconds * 1000;
    const std::int32_t offset = ZoneAccess::offset(zone, civil::floorSeconds(seconds));
    const auto shown = engine_->namesZone ? namedZone(zone, milliseconds, offset) : fixedZone(offset);
    engine_->format->setTimeZone(*shown);
    icu::UnicodeString written;
    engine_->format->format(milliseconds, written);
    written.toUTF8String(text);
    return text;
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): takes what a unique_ptr holds for lost

std::optional<double> ICUPattern::parse(std::string_view text, const TimeZone& zone) const {
    const std::lock_guard lock(engine_->mutex);
    if (!engine_->format) return std::nullopt;
    std::unique_ptr<icu::Calendar> calendar(engine_->format->getCalendar()->clone());
    calendar->clear();
    // Clock times mean what our zones say, unless the text brings a zone of its own.
    calendar->adoptTimeZone(engine_->showsZone ? icu::TimeZone::createTimeZone(unicode(zone.identifier()))
                                               : icu::TimeZone::getGMT()->clone());
    const auto read = unicode(text);
    if (longestRun(read, u_isdigit) > engine_->mostDigits) return std::nullopt;
    icu::ParsePosition position(0);
    engine_->format->parse(read, *calendar, position);
    UErrorCode status = U_ZERO_ERROR;
    const double seconds = calendar->getTime(status) / 1000;
    if (U_FAILURE(status) || position.getErrorIndex() >= 0 || position.getIndex() != read.length() || read.isEmpty())
        return std::nullopt;
    if (engine_->showsZone) return seconds;
    const std::int64_t whole = civil::floorSeconds(seconds);
    const double fraction = seconds - static_cast<double>(whole);
    return static_cast<double>(ZoneAccess::resolve(zone, whole).seconds) + fraction;
}

}  // namespace corvane
