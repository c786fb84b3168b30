#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Platform/Dates/Private/SystemZone.hpp>
#include <Corvane/Platform/Dates/Private/ZoneAccess.hpp>
#include <Corvane/Platform/Dates/Private/ZoneFile.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

namespace {

constexpr int widestFixedOffset = 18 * 3600;

/// Names of the database are relative paths of plain characters; no other text reaches the file system.
bool isName(std::string_view text) noexcept {
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
               c == '+' || c == '/';
    };
    return !text.empty() && text.size() < 128 && text.front() != '/' && std::ranges::all_of(text, isPlain);
}

std::string fixedIdentifier(int offset) {
    if (offset == 0) return "GMT";
    const int distance = std::abs(offset);
    std::string text =
        fmt::format(FMT_COMPILE("GMT{}{:02}{:02}"), offset < 0 ? '-' : '+', distance / 3600, distance / 60 % 60);
    if (distance % 60 != 0) fmt::format_to(std::back_inserter(text), FMT_COMPILE("{:02}"), distance % 60);
    return text;
}

/// Reads what `fixedIdentifier` writes.
std::optional<int> fixedOffset(std::string_view text) noexcept {
    if (text == "GMT") return 0;
    if (!text.starts_with("GMT") || (text.size() != 8 && text.size() != 10)) return std::nullopt;
    const char sign = text[3];
    if (sign != '+' && sign != '-') return std::nullopt;
    int offset = 0;
    for (std::size_t place = 4, unit = 3600; place < text.size(); place += 2, unit /= 60) {
        const unsigned tens = static_cast<unsigned char>(text[place]) - unsigned{'0'};
        const unsigned ones = static_cast<unsigned char>(text[place + 1]) - unsigned{'0'};
        if (tens > 9 || ones > 9 || (unit != 3600 && tens > 5)) return std::nullopt;
        offset += static_cast<int>((10 * tens + ones) * unit);
    }
    return sign == '-' ? -offset : offset;
}

}  // namespace

TimeZone ZoneAccess::adopt(std::string identifier, ZoneRules rules) {
    // Kept in a list, so that they are not lost for tools that look for leaks.
    static auto& kept = *new std::pair<std::mutex, std::vector<std::unique_ptr<const TimeZone::Region>>>;
    const std::lock_guard lock(kept.first);
    const auto& region = kept.second.emplace_back(
        std::make_unique<const TimeZone::Region>(TimeZone::Region{std::move(identifier), std::move(rules)}));
    return {TimeZone::Kind::region, 0, region.get()};
}

const TimeZone& TimeZone::utc() noexcept {
    static constexpr TimeZone zone(Kind::utc, 0, nullptr);
    return zone;
}

std::optional<TimeZone> TimeZone::named(std::string_view identifier) {
    if (identifier == "UTC") return utc();
    if (const auto offset = fixedOffset(identifier)) return withSecondsFromGMT(*offset);
    if (!isName(identifier)) return std::nullopt;

    // Grows to the size of the database at most, as names that are not there are not kept.
    static auto& known = *new std::pair<std::mutex, std::map<std::string, TimeZone, std::less<>>>;
    const std::lock_guard lock(known.first);
    if (const auto found = known.second.find(identifier); found != known.second.end()) return found->second;
    std::string name(identifier);
    auto rules = loadZone(zoneDirectory + name);
    if (!rules) return std::nullopt;
    const TimeZone zone = ZoneAccess::adopt(name, *std::move(rules));
    known.second.emplace(std::move(name), zone);
    return zone;
}

std::optional<TimeZone> TimeZone::withSecondsFromGMT(int seconds) {
    if (seconds < -widestFixedOffset || seconds > widestFixedOffset) return std::nullopt;
    return TimeZone(Kind::fixed, seconds, nullptr);
}

TimeZone TimeZone::system() {
    return systemZone::get();
}

TimeZone TimeZone::current() {
    const TimeZone* const replacement = systemZone::replacement();
    return replacement != nullptr ? *replacement : system();
}

void TimeZone::setCurrent(std::optional<TimeZone> zone) {
    systemZone::replace(zone);
}

void TimeZone::resetSystemTimeZone() {
    systemZone::reset();
}

std::string TimeZone::identifier() const {
    if (region_ != nullptr) return region_->identifier;
    return kind_ == Kind::utc ? "UTC" : fixedIdentifier(offset_);
}

int TimeZone::secondsFromGMT(Date date) const noexcept {
    return ZoneAccess::offset(*this, wholeSeconds(date));
}

int TimeZone::secondsFromGMT() const noexcept {
    return secondsFromGMT(Clock::current().now());
}

bool TimeZone::isDaylightSavingTime(Date date) const noexcept {
    const ZoneRules* const rules = ZoneAccess::rules(*this);
    return rules != nullptr && rules->at(wholeSeconds(date)).isDaylightSaving;
}

int TimeZone::daylightSavingTimeOffset(Date date) const noexcept {
    const ZoneRules* const rules = ZoneAccess::rules(*this);
    return rules != nullptr ? rules->at(wholeSeconds(date)).daylightSaving : 0;
}

std::string TimeZone::abbreviation(Date date) const {
    const ZoneRules* const rules = ZoneAccess::rules(*this);
    return rules != nullptr ? rules->at(wholeSeconds(date)).abbreviation : identifier();
}

std::optional<Date> TimeZone::nextTransition(Date date) const noexcept {
    const ZoneRules* const rules = ZoneAccess::rules(*this);
    if (rules == nullptr) return std::nullopt;
    return rules->nextTransition(wholeSeconds(date)).transform([](std::int64_t seconds) {
        return Date(std::chrono::duration<double>(static_cast<double>(seconds)));
    });
}

}  // namespace corvane
