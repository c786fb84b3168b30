// JSON documents read to structs and written from them.

#include <cstdio>
#include <cstdlib>
#include <map>

#include <benchmark/benchmark.h>

#include <Corvane/Core/Throwable.hpp>
#include <Corvane/Decoding/DirectOrderedDictionaryDecoder.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/JSON/Fixtures.hpp"
#include "benchmarks/JSON/Matchday.hpp"

#if __has_include(<rapidjson/reader.h>)
#define HAS_RAPIDJSON 1
#include "benchmarks/JSON/RapidJSONReader.hpp"
#else
#define HAS_RAPIDJSON 0
#endif
#if CORVANE_PEER_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#if CORVANE_PEER_ASIO && __has_include(<boost/json.hpp>)
#define HAS_BOOST_JSON 1
#include <boost/json/src.hpp>
#else
#define HAS_BOOST_JSON 0
#endif

namespace {

using corvane::Data;
using corvane::JSONDecoder;
using corvane::JSONEncoder;

/// The same members read by hand from their container.
struct MatchByHand {
    Match match;

    static std::expected<MatchByHand, corvane::DecodingError> decode(const corvane::Decoder& decoder) {
        const auto members = decoder.container();
        if (!members) return std::unexpected(members.error());
        auto id = members->decode<std::int64_t>("id");
        auto round = members->decode<int>("round");
        auto status = members->decode<std::string>("status");
        auto finished = members->decode<bool>("finished");
        auto home = members->decode<Side>("home");
        auto away = members->decode<Side>("away");
        auto score = members->decode<Score>("score");
        auto venue = members->decode<std::string>("venue");
        auto updated = members->decode<std::string>("updated");
        if (!updated) return std::unexpected(updated.error());
        return MatchByHand{{*id, *round, *std::move(status), *finished, *std::move(home), *std::move(away), *score,
                            *std::move(venue), *std::move(updated)}};
    }
};

struct MatchdayByHand {
    std::vector<MatchByHand> matches;
};

struct LenientMatchday {
    std::vector<corvane::Throwable<Match>> matches;
};

template <class Body>
void run(benchmark::State& state, Body body) {
    const Data& data = document(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(body(data));
    state.SetBytesProcessed(static_cast<std::int64_t>(data.size()) * state.iterations());
}

template <class T>
void decodeCorvane(benchmark::State& state) {
    run(state, [](const Data& data) { return JSONDecoder().decode<T>(data); });
}

void decodeOnDemand(benchmark::State& state) {
    run(state, [](const Data& data) { return readOnDemand(data.text()); });
}

#ifdef __x86_64__
void decodeOnDemandHaswell(benchmark::State& state) {
    if (__builtin_cpu_supports("avx2") == 0) return state.SkipWithError("the processor lacks AVX2");
    run(state, [](const Data& data) { return readOnDemandHaswell(data.text()); });
}

BENCHMARK(decodeOnDemandHaswell)->Name("decode/simdjsonHaswell")->Arg(20'000)->Arg(1'000'000);
#endif

/// What copying the structs takes: nobody who makes them can be faster.
void copyStructs(benchmark::State& state) {
    const Matchday day = *JSONDecoder().decode<Matchday>(document(state.range(0)));
    run(state, [&day](const Data&) { return Matchday(day); });
}

void encodeCorvane(benchmark::State& state) {
    const Matchday day = *JSONDecoder().decode<Matchday>(document(state.range(0)));
    const std::size_t size = JSONEncoder().encode(day)->size();
    for (auto _ : state)
        benchmark::DoNotOptimize(JSONEncoder().encode(day));
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

BENCHMARK(decodeCorvane<Matchday>)->Name("decode/Corvane")->Arg(20'000)->Arg(1'000'000);
BENCHMARK(decodeCorvane<MatchdayByHand>)->Name("decode/CorvaneContainers")->Arg(20'000)->Arg(1'000'000);
BENCHMARK(decodeCorvane<LenientMatchday>)->Name("decode/CorvaneThrowable")->Arg(20'000)->Arg(1'000'000);
BENCHMARK(decodeOnDemand)->Name("decode/simdjson")->Arg(20'000)->Arg(1'000'000);
BENCHMARK(copyStructs)->Name("decode/copy")->Arg(20'000)->Arg(1'000'000);
BENCHMARK(encodeCorvane)->Name("encode/Corvane")->Arg(20'000)->Arg(1'000'000);

#if HAS_RAPIDJSON
void decodeRapidJSON(benchmark::State& state) {
    run(state, [](const Data& data) { return readRapidJSON(data.text()); });
}

BENCHMARK(decodeRapidJSON)->Name("decode/RapidJSON")->Arg(20'000)->Arg(1'000'000);
#endif

/// A dictionary of so many members, in payload order.
struct Table {
    corvane::OrderedDictionary<std::string, std::int64_t> points;

    static std::expected<Table, corvane::DecodingError> decode(const corvane::Decoder& decoder) {
        const auto members = decoder.container();
        if (!members) return std::unexpected(members.error());
        auto points = corvane::DirectOrderedDictionaryDecoder::decode<std::string, std::int64_t>(*members, "points");
        if (!points) return std::unexpected(std::move(points).error());
        return Table{*std::move(points)};
    }
};

const Data& tableDocument(std::int64_t size) {
    static std::map<std::int64_t, Data> documents;
    const auto [entry, isNew] = documents.try_emplace(size);
    if (!isNew) return entry->second;
    std::string text = R"({"points":{)";
    for (std::int64_t i = 0; i < size; ++i)
        text += (i > 0 ? ",\"team-" : "\"team-") + std::to_string(i) + "\":" + std::to_string(i);
    return entry->second = Data(text + "}}");
}

template <class Body>
void runTable(benchmark::State& state, Body body) {
    const Data& data = tableDocument(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(body(data));
    state.SetBytesProcessed(static_cast<std::int64_t>(data.size()) * state.iterations());
}

void orderedCorvane(benchmark::State& state) {
    runTable(state, [](const Data& data) { return JSONDecoder().decode<Table>(data); });
}

BENCHMARK(orderedCorvane)->Name("ordered/Corvane")->Arg(1'000)->Arg(10'000)->Arg(100'000);

#if HAS_BOOST_JSON
void orderedBoost(benchmark::State& state) {
    runTable(state, [](const Data& data) {
        boost::json::monotonic_resource memory(data.size());
        const auto value = boost::json::parse(boost::json::string_view(data.text()), &memory);
        return value.as_object().at("points").as_object().size();
    });
}

BENCHMARK(orderedBoost)->Name("ordered/Boost")->Arg(1'000)->Arg(10'000)->Arg(100'000);
#endif

#if CORVANE_PEER_NLOHMANN
/// Compares every key with every other one, so it is only asked for a thousand.
void orderedNlohmann(benchmark::State& state) {
    runTable(state, [](const Data& data) { return nlohmann::ordered_json::parse(data.text()).at("points").size(); });
}

BENCHMARK(orderedNlohmann)->Name("ordered/nlohmann")->Arg(1'000);
#endif

/// Everybody must read the same before anybody's speed counts.
void check(bool holds, const char* who) {
    if (holds) return;
    std::fprintf(stderr, "%s reads something else\n", who);
    std::exit(1);
}

}  // namespace

int main(int argc, char** argv) {
    const Data& data = document(1'000'000);
    const Matchday day = *JSONDecoder().decode<Matchday>(data);
    check(day == readOnDemand(data.text()), "simdjson");
    check(day.matches.back() == JSONDecoder().decode<MatchdayByHand>(data)->matches.back().match, "the container");
#if HAS_RAPIDJSON
    check(day == readRapidJSON(data.text()), "RapidJSON");
#endif
    std::vector<Goal> goals;
    for (const std::string size : {"20000", "1000000"}) {
        for (const char* peer : {"simdjson", "simdjsonHaswell"})
            goals.push_back(
                {"decode/Corvane/" + size, "decode/" + std::string(peer) + "/" + size, "bytes_per_second", 0.85, true});
        goals.push_back({"decode/Corvane/" + size, "decode/RapidJSON/" + size, "bytes_per_second", 1.8, true});
    }
    for (const std::string size : {"1000", "10000", "100000"})
        goals.push_back({"ordered/Corvane/" + size, "ordered/Boost/" + size, "bytes_per_second", 1.5, true});
    goals.push_back({"ordered/Corvane/1000", "ordered/nlohmann/1000", "bytes_per_second", 8, true});
    return runBenchmarks(argc, argv, goals);
}
