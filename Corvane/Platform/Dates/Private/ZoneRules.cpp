#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/ZoneRules.hpp>

namespace corvane {

namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t cycle = civil::daysPerCycle * civil::secondsPerDay;

/// A rule without any table counts from this year on; before it, standard time is all there is.
constexpr std::int64_t firstRuleYear = 1900;

/// No clock is further from UTC, so that no transition nearer than this to a clock time goes unseen.
constexpr std::int64_t widestOffset = 26 * 3600;

std::int64_t newYear(std::int64_t year) noexcept {
    return civil::daysFrom(year, 1, 1) * civil::secondsPerDay;
}

}  // namespace

ZoneRules::ZoneRules(std::vector<ZoneSpan> spans, const std::optional<PosixZone>& footer)
    : spans_(std::move(spans)), end_(greatest) {
    if (footer && footer->daylight) appendYears(*footer, *footer->daylight);

    // Changes that are none, or that another one follows at once, are dropped: what is left has its start to itself.
    std::vector<ZoneSpan> kept;
    for (ZoneSpan& span : spans_) {
        if (!kept.empty() && kept.back().from == span.from) kept.pop_back();
        const bool isNews = kept.empty() || kept.back().offset != span.offset ||
                            kept.back().isDaylightSaving != span.isDaylightSaving ||
                            kept.back().abbreviation != span.abbreviation;
        if (isNews) kept.push_back(std::move(span));
    }
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): the years of the rule had to be appended first.
    spans_ = std::move(kept);
    spans_.front().from = least;
    // A rule may come to one time all year round.
    if (spans_.back().from < end_) end_ = greatest;
    findDaylightSaving();
    makeIndex();
}

void ZoneRules::appendYears(const PosixZone& footer, const PosixZone::Time& daylight) {
    const std::int64_t last = spans_.back().from;
    const std::int64_t firstYear =
        last == least ? firstRuleYear : civil::dayOf(civil::floorDivide(last, civil::secondsPerDay)).year;
    const auto append = [&](std::int64_t from, const PosixZone::Time& time, bool isDaylightSaving) {
        if (from <= last) return;
        // A change may be due after the next year's first one.
        spans_.insert(std::ranges::upper_bound(spans_, from, {}, &ZoneSpan::from),
                      {.from = from,
                       .offset = time.offset,
                       .daylightSaving = 0,
                       .isDaylightSaving = isDaylightSaving,
                       .abbreviation = time.abbreviation});
    };
    // Two years beyond 400, as the first is covered in part, and a change may be due days before or after its year.
    const std::int64_t lastYear = firstYear + civil::yearsPerCycle + 2;
    for (std::int64_t year = firstYear; year <= lastYear; ++year) {
        const std::int64_t toDaylight = footer.toDaylight.inYear(year) - footer.standard.offset;
        const std::int64_t toStandard = footer.toStandard.inYear(year) - daylight.offset;
        if (toDaylight < toStandard) {
            append(toDaylight, daylight, true);
            append(toStandard, footer.standard, false);
        } else {
            append(toStandard, footer.standard, false);
            append(toDaylight, daylight, true);
        }
    }
    end_ = newYear(lastYear);
}

void ZoneRules::findDaylightSaving() noexcept {
    // Files tell which spans are daylight saving, but not what standard time is then. It is that of the standard span
    // before, or of the one after where only that makes the usual hour, as the zone changed its standard time as well.
    constexpr std::int32_t usual = 3600;
    for (auto span = spans_.begin(); span != spans_.end(); ++span) {
        if (!span->isDaylightSaving) continue;
        const auto isStandard = [](const ZoneSpan& other) { return !other.isDaylightSaving; };
        const auto before = std::find_if(std::make_reverse_iterator(span), spans_.rend(), isStandard);
        const auto after = std::find_if(span, spans_.end(), isStandard);
        const std::int32_t sinceBefore = before != spans_.rend() ? span->offset - before->offset : 0;
        const std::int32_t untilAfter = after != spans_.end() ? span->offset - after->offset : 0;
        // Where daylight saving was already in force, this is double summer time.
        const bool isFirst = before.base() == span;
        const bool isAfter = sinceBefore == 0 || sinceBefore > 2 * usual || (isFirst && untilAfter == usual);
        span->daylightSaving = isAfter ? untilAfter : sinceBefore;
        // It never saves nothing: standard time was another one for these months alone.
        if (span->daylightSaving == 0) span->daylightSaving = usual;
    }
}

void ZoneRules::makeIndex() {
    for (const ZoneSpan& span : spans_)
        starts_.push_back(span.from);
    starts_.push_back(greatest);
    if (spans_.size() < 2) {
        indexStart_ = greatest;
        return;
    }
    indexStart_ = starts_[1];
    const std::int64_t lastStart = starts_[spans_.size() - 1];
    std::uint16_t index = 1;
    for (std::int64_t start = indexStart_; start <= lastStart; start += std::int64_t{1} << bucketShift) {
        while (starts_[index + std::size_t{1}] <= start)
            ++index;
        buckets_.push_back(index);
    }
}

std::int64_t ZoneRules::foldBack(std::int64_t seconds) const noexcept {
    return end_ == greatest ? seconds : end_ - cycle + (seconds - end_) % cycle;
}

std::optional<std::int64_t> ZoneRules::nextTransition(std::int64_t seconds) const noexcept {
    const std::int64_t folded = fold(seconds);
    const std::size_t next = indexAt(folded) + 1;
    // Where the rules repeat, the table goes on behind its end for a year.
    return next < spans_.size() ? std::optional(seconds + (starts_[next] - folded)) : std::nullopt;
}

ZoneRules::Resolved ZoneRules::resolve(std::int64_t local) const noexcept {
    const std::int64_t shift = local - fold(local);
    const std::int64_t folded = local - shift;
    std::size_t index = indexAt(folded - widestOffset);
    for (;; ++index) {
        const std::int64_t instant = folded - spans_[index].offset;
        const std::int64_t next = starts_[index + 1];
        if (instant < next) return {instant + shift, false, 0};
        // The clock is past the end of this span already; unless the next one holds it, nobody ever saw it.
        if (folded - spans_[index + 1].offset < next) return {instant + shift, true, next + shift};
    }
}

}  // namespace corvane
