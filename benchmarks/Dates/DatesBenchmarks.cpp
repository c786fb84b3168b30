// Instants of ten years in the fixed forms of sports data, and HTTP dates. Every way has to agree before it is timed.

#include <stdlib.h>
#include <time.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <Corvane/Platform/Dates/DateFormatter.hpp>

#include "../Goals.hpp"
#include "DateLimits.hpp"

#if CORVANE_PEER_HINNANT
#include <date/tz.h>
#endif

namespace {

using corvane::Date;
using corvane::DateFormatter;
using corvane::Locale;
using corvane::TimeZone;

constexpr const char* patterns[] = {"yyyyMMddHHmmss", "H:mm, d MMMM yyyy", "HH:mm"};
constexpr std::int64_t clockPattern = 2;
constexpr std::int64_t httpPattern = 3;
constexpr std::size_t mask = 1023;

const TimeZone paris = TimeZone::named("Europe/Paris").value_or(TimeZone::utc());

Date date(std::int64_t time) {
    return Date(std::chrono::duration<double>(static_cast<double>(time)));
}

DateFormatter formatter(std::int64_t pattern) {
    return DateFormatter(patterns[pattern], Locale("en_US"), pattern == clockPattern ? paris : TimeZone::utc());
}

std::string systemText(std::int64_t pattern, std::int64_t time) {
    char text[64];
    tm parts{};
    static_cast<void>(pattern == clockPattern ? ::localtime_r(&time, &parts) : ::gmtime_r(&time, &parts));
    const auto write = [&] {
        switch (pattern) {
            case 0:
                return ::strftime(text, sizeof text, "%Y%m%d%H%M%S", &parts);
            case 1:
                // With zeros in front: the standard knows no other hours and days.
                return ::strftime(text, sizeof text, "%H:%M, %d %B %Y", &parts);
            case clockPattern:
                return ::strftime(text, sizeof text, "%H:%M", &parts);
            default:
                return ::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S GMT", &parts);
        }
    };
    return {text, write()};
}

/// The zone's offsets from 1970 to 2100.
limits::Zone limitZone() {
    limits::Zone zone;
    for (Date start{}; start < date(4'102'444'800);) {
        zone.starts.push_back(static_cast<std::int64_t>(start.time_since_epoch().count()));
        zone.offsets.push_back(paris.secondsFromGMT(start));
        start = paris.nextTransition(start).value_or(date(5'000'000'000));
    }
    return zone;
}

std::string limitText(std::int64_t pattern, std::int64_t time, const limits::Zone& zone) {
    if (pattern == clockPattern) return limits::clockText(time, zone);
    return pattern == 0 ? limits::compactText(time) : limits::longText(time);
}

struct Samples {
    std::vector<std::int64_t> times;
    std::vector<std::string> compact;
    std::vector<std::string> http;

    Samples() {
        std::mt19937_64 random(7);
        while (times.size() <= mask) {
            times.push_back(1'577'836'800 + static_cast<std::int64_t>(random() % 315'360'000));
            compact.push_back(systemText(0, times.back()));
            http.push_back(systemText(httpPattern, times.back()));
        }
    }
};

const Samples& samples() {
    static const Samples made;
    return made;
}

template <class Job>
void each(benchmark::State& state, Job job) {
    std::size_t index = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(job(index++ & mask));
}

void Format(benchmark::State& state) {
    const auto made = formatter(state.range(0));
    each(state, [&](std::size_t index) { return made.string(date(samples().times[index])); });
}

void FormatLimit(benchmark::State& state) {
    const auto zone = limitZone();
    const auto pattern = state.range(0);
    each(state, [&](std::size_t index) { return limitText(pattern, samples().times[index], zone); });
}

void FormatSystem(benchmark::State& state) {
    const auto pattern = state.range(0);
    each(state, [&](std::size_t index) { return systemText(pattern, samples().times[index]); });
}

void FormatInDevicesZone(benchmark::State& state) {
    const DateFormatter made(patterns[clockPattern], Locale("en_US"));
    each(state, [&](std::size_t index) { return made.string(date(samples().times[index])); });
}

void Parse(benchmark::State& state) {
    const auto made = formatter(0);
    each(state, [&](std::size_t index) { return made.date(samples().compact[index]); });
}

void ParseLimit(benchmark::State& state) {
    each(state, [](std::size_t index) { return limits::parseCompact(samples().compact[index]); });
}

void ParseSystem(benchmark::State& state) {
    each(state, [](std::size_t index) {
        tm parts{};
        ::strptime(samples().compact[index].c_str(), "%Y%m%d%H%M%S", &parts);
        return ::timegm(&parts);
    });
}

void HTTPDate(benchmark::State& state) {
    const DateFormatter& made = DateFormatter::httpDate();
    each(state, [&](std::size_t index) { return made.date(samples().http[index]); });
}

void HTTPDateLimit(benchmark::State& state) {
    each(state, [](std::size_t index) { return limits::parseHTTPDate(samples().http[index]); });
}

void HTTPDateCurl(benchmark::State& state) {
    each(state, [](std::size_t index) { return ::curl_getdate(samples().http[index].c_str(), nullptr); });
}

void Offset(benchmark::State& state) {
    each(state, [](std::size_t index) { return paris.secondsFromGMT(date(samples().times[index])); });
}

void OffsetLimit(benchmark::State& state) {
    const auto zone = limitZone();
    each(state, [&](std::size_t index) { return zone.offset(samples().times[index]); });
}

BENCHMARK(Format)->DenseRange(0, 2);
BENCHMARK(FormatLimit)->DenseRange(0, 2);
BENCHMARK(FormatSystem)->DenseRange(0, 2);
BENCHMARK(FormatInDevicesZone);
BENCHMARK(Parse);
BENCHMARK(ParseLimit);
BENCHMARK(ParseSystem);
BENCHMARK(HTTPDate);
BENCHMARK(HTTPDateLimit);
BENCHMARK(HTTPDateCurl);
BENCHMARK(Offset);
BENCHMARK(OffsetLimit);

#if CORVANE_PEER_HINNANT
void OffsetHinnant(benchmark::State& state) {
    const auto* const zone = date::locate_zone("Europe/Paris");
    each(state, [&](std::size_t index) {
        return zone->get_info(date::sys_seconds(std::chrono::seconds(samples().times[index]))).offset.count();
    });
}

BENCHMARK(OffsetHinnant);
#endif

bool allAgree() {
    const auto zone = limitZone();
    for (std::size_t index = 0; index <= mask; ++index) {
        const auto time = samples().times[index];
        for (std::int64_t pattern = 0; pattern <= clockPattern; ++pattern) {
            const auto text = formatter(pattern).string(date(time));
            if (text != limitText(pattern, time, zone)) return false;
            if (pattern != 1 && text != systemText(pattern, time)) return false;
        }
        const auto& compact = samples().compact[index];
        const auto& http = samples().http[index];
        if (formatter(0).date(compact) != date(time) || limits::parseCompact(compact) != time) return false;
        if (DateFormatter::httpDate().date(http) != date(time) || limits::parseHTTPDate(http) != time) return false;
        if (::curl_getdate(http.c_str(), nullptr) != time) return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    ::setenv("TZ", "Europe/Paris", 1);
    ::tzset();
    if (!allAgree()) {
        std::fputs("the ways to write and read dates disagree\n", stderr);
        return 1;
    }
    std::vector<Goal> goals;
    for (const char* const row : {"Format/0", "Format/1", "Format/2"}) {
        const std::string arguments = std::string(row).substr(6);
        goals.push_back({row, "FormatLimit" + arguments, "", 1.3});
        goals.push_back({row, "FormatSystem" + arguments, "", 0.35});
    }
    goals.insert(goals.end(), {{"Parse", "ParseLimit", "", 1.3},
                               {"Parse", "ParseSystem", "", 0.25},
                               {"HTTPDate", "HTTPDateLimit", "", 1.5},
                               {"HTTPDate", "HTTPDateCurl", "", 0.03},
                               {"Offset", "OffsetLimit", "", 1.3},
                               {"Offset", "OffsetHinnant", "", 0.35}});
    return runBenchmarks(argc, argv, goals);
}
