#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <Corvane/Platform/Dates/DateFormatter.hpp>
#include <Corvane/Platform/Dates/Private/ZoneFile.hpp>

namespace {

using corvane::Date;
using corvane::DateFormatter;
using corvane::Locale;
using corvane::PosixZone;
using corvane::TimeZone;
using corvane::ZoneRules;

void require(bool holds) {
    if (!holds) std::abort();
}

/// Whatever the rules are, clock times lead to instants at which clocks show them, and transitions lie ahead.
void checkRules(const ZoneRules& rules) {
    for (std::int64_t time = -20'000'000'000; time < 60'000'000'000; time += 1'234'567'891) {
        const auto resolved = rules.resolve(time);
        if (!resolved.isSkipped) require(resolved.seconds + rules.at(resolved.seconds).offset == time);
        const auto next = rules.nextTransition(time);
        require(!next || *next > time);
        if (next) require(rules.nextTransition(*next - 1) == next);
    }
}

/// What was read is written as a text that reads the same.
void checkText(const DateFormatter& formatter, std::string_view text) {
    const auto date = formatter.date(text);
    if (date) require(formatter.date(formatter.string(*date)) == date);
}

const std::vector<DateFormatter>& formatters() {
    static const auto& made = *new std::vector<DateFormatter>{
        DateFormatter::httpDate(),
        DateFormatter("yyyyMMddHHmmss", Locale("en_US"), TimeZone::utc()),
        DateFormatter("H:mm, d MMMM yyyy", Locale("en_US"), TimeZone::utc()),
        DateFormatter("EEE dd.MM.yyyy hh:mm:ss.SSS a", Locale("de_DE"), TimeZone::utc()),
        DateFormatter("MMM d, y", Locale("en_US"), TimeZone::utc()),
    };
    return made;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    const std::string_view text(reinterpret_cast<const char*>(data), size);

    if (const auto rules = corvane::readZone(bytes)) checkRules(*rules);
    if (const auto zone = PosixZone::parse(text))
        checkRules(ZoneRules({{.from = 0,
                               .offset = zone->standard.offset,
                               .daylightSaving = 0,
                               .isDaylightSaving = false,
                               .abbreviation = zone->standard.abbreviation}},
                             zone));
    for (const DateFormatter& formatter : formatters())
        checkText(formatter, text);

    // A pattern, a line's end and a text.
    const auto line = text.find('\n');
    if (line != std::string_view::npos && line < 100) {
        const DateFormatter formatter(text.substr(0, line), Locale("en_US"), TimeZone::utc());
        static_cast<void>(formatter.date(text.substr(line + 1)));
        static_cast<void>(formatter.string(Date(std::chrono::duration<double>(static_cast<double>(size) * 1e7 - 1e9))));
    }
    static_cast<void>(TimeZone::named(text));
    return 0;
}
