#include <utility>

#include <Corvane/Platform/Dates/DateFormatter.hpp>
#include <Corvane/Platform/Dates/Private/DatePattern.hpp>
#include <Corvane/Platform/Dates/Private/HTTPDate.hpp>
#include <Corvane/Platform/Dates/Private/ICUPattern.hpp>
#include <Corvane/Platform/Dates/Private/ZoneAccess.hpp>

namespace corvane {

/// A compiled pattern: ours, or ICU's where it says more than ours can.
struct DateFormatter::Form {
    std::optional<DatePattern> pattern;
    std::unique_ptr<const ICUPattern> fallback;
    bool readsHTTPDates = false;
};

DateFormatter::DateFormatter(std::string_view dateFormat, std::optional<Locale> locale, std::optional<TimeZone> zone)
    : dateFormat_(dateFormat), locale_(std::move(locale)), zone_(zone) {
    compile();
}

const DateFormatter& DateFormatter::httpDate() {
    static const auto& formatter = []() -> const DateFormatter& {
        auto& made = *new DateFormatter("EEE, dd MMM yyyy HH:mm:ss 'GMT'", Locale("en_US_POSIX"), TimeZone::utc());
        auto form = std::make_shared<Form>();
        form->pattern = made.form_->pattern;
        form->readsHTTPDates = true;
        made.form_ = std::move(form);
        return made;
    }();
    return formatter;
}

void DateFormatter::setDateFormat(std::string_view dateFormat) {
    dateFormat_ = dateFormat;
    compile();
}

void DateFormatter::setLocale(std::optional<Locale> locale) {
    locale_ = std::move(locale);
    compile();
}

void DateFormatter::setCalendar(std::optional<Calendar> calendar) {
    calendar_ = calendar;
    compile();
}

void DateFormatter::compile() {
    auto form = std::make_shared<Form>();
    const auto symbols = LocaleSymbols::of(locale());
    if (symbols->hasLatinDigits && (calendar_ || symbols->hasGregorianCalendar))
        form->pattern = DatePattern::compile(dateFormat_, *symbols);
    if (!form->pattern) form->fallback = std::make_unique<ICUPattern>(dateFormat_, locale(), calendar_);
    form_ = std::move(form);
}

std::string DateFormatter::string(Date date) const {
    const double seconds = date.time_since_epoch().count();
    if (!civil::isInstant(seconds)) return {};
    const TimeZone zone = timeZone();
    const auto& pattern = form_->pattern;
    if (!pattern) return form_->fallback->format(seconds, zone);
    auto moment = pattern->moment(seconds);
    moment.seconds += ZoneAccess::offset(zone, moment.seconds);
    return pattern->format(moment);
}

bool DateFormatter::read(std::string_view text, double& seconds) const {
    return form_->readsHTTPDates ? parseHTTPDate(text, seconds) : readForm(text, seconds);
}

bool DateFormatter::readForm(std::string_view text, double& seconds) const {
    const auto& pattern = form_->pattern;
    if (!pattern) {
        const auto found = form_->fallback->parse(text, timeZone());
        seconds = found.value_or(0);
        return found.has_value();
    }
    DatePattern::Moment local{};
    if (!pattern->parse(text, local)) return false;
    seconds = static_cast<double>(ZoneAccess::resolve(timeZone(), local.seconds).seconds) + local.milliseconds / 1000.0;
    return true;
}

}  // namespace corvane
