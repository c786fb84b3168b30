// JSON documents read to loosely typed values, walked and written.

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <simdjson.h>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/JSON/AllocationCount.hpp"
#include "benchmarks/JSON/Fixtures.hpp"

// The packages of Boost come with its JSON library.
#if CORVANE_PEER_ASIO && __has_include(<boost/json.hpp>)
#define HAS_BOOST_JSON 1
#include <boost/json/src.hpp>
#else
#define HAS_BOOST_JSON 0
#endif

#if __has_include(<rapidjson/document.h>)
#define HAS_RAPIDJSON 1
#include <rapidjson/document.h>
#else
#define HAS_RAPIDJSON 0
#endif

namespace {

using corvane::Data;
using corvane::JSONDictionary;
using corvane::JSONSerialization;
using corvane::JSONValue;

template <class Body>
void run(benchmark::State& state, Body body) {
    const Data& data = document(state.range(0));
    body(data);
    const std::uint64_t before = allocationCount();
    for (auto _ : state)
        body(data);
    state.counters["allocations"] =
        static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations());
    state.SetBytesProcessed(static_cast<std::int64_t>(data.size()) * state.iterations());
}

/// The fastest there is: a tape in the parser's own memory, overwritten by the next document.
void readTape(benchmark::State& state) {
    simdjson::dom::parser parser;
    run(state, [&parser](const Data& data) {
        benchmark::DoNotOptimize(parser.parse(data.text().data(), data.size(), false));
    });
}

void readCorvane(benchmark::State& state) {
    run(state, [](const Data& data) { benchmark::DoNotOptimize(JSONSerialization::jsonObject(data)); });
}

void writeTape(benchmark::State& state) {
    simdjson::dom::parser parser;
    const Data& data = document(state.range(0));
    const simdjson::dom::element root = parser.parse(data.text().data(), data.size(), false);
    run(state, [root](const Data&) { benchmark::DoNotOptimize(simdjson::minify(root)); });
}

void writeCorvane(benchmark::State& state) {
    const JSONValue value = *JSONSerialization::jsonObject(document(state.range(0)));
    run(state, [&value](const Data&) { benchmark::DoNotOptimize(JSONSerialization::data(value)); });
}

#if HAS_BOOST_JSON
void readBoost(benchmark::State& state) {
    run(state, [](const Data& data) {
        boost::json::monotonic_resource memory(data.size());
        benchmark::DoNotOptimize(boost::json::parse(boost::json::string_view(data.text()), &memory));
    });
}

void writeBoost(benchmark::State& state) {
    const boost::json::value value = boost::json::parse(boost::json::string_view(document(state.range(0)).text()));
    run(state, [&value](const Data&) { benchmark::DoNotOptimize(boost::json::serialize(value)); });
}
#endif

#if HAS_RAPIDJSON
/// Its fastest way: texts stay in a copy of the document.
void readRapidJSON(benchmark::State& state) {
    std::string copy;
    run(state, [&copy](const Data& data) {
        copy.assign(data.text());
        rapidjson::Document value;
        value.ParseInsitu<rapidjson::kParseValidateEncodingFlag>(copy.data());
        benchmark::DoNotOptimize(value.HasParseError());
    });
}
#endif

/// Every key of a dictionary of this many members, in turn.
void findKeys(benchmark::State& state) {
    JSONDictionary dictionary;
    std::vector<std::string> keys;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        keys.push_back(fmt::format("team-{}", i));
        dictionary.set(keys.back(), i);
    }
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(dictionary.find(keys[next]));
        if (++next == keys.size()) next = 0;
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(20'000)->Arg(1'000'000);
}

BENCHMARK(readTape)->Name("read/simdjson")->Apply(sizes);
BENCHMARK(readCorvane)->Name("read/Corvane")->Apply(sizes);
BENCHMARK(writeTape)->Name("write/simdjson")->Apply(sizes);
BENCHMARK(writeCorvane)->Name("write/Corvane")->Apply(sizes);
#if HAS_BOOST_JSON
BENCHMARK(readBoost)->Name("read/Boost")->Apply(sizes);
BENCHMARK(writeBoost)->Name("write/Boost")->Apply(sizes);
#endif
#if HAS_RAPIDJSON
BENCHMARK(readRapidJSON)->Name("read/RapidJSON")->Apply(sizes);
#endif
BENCHMARK(findKeys)->Name("find/Corvane")->Arg(8)->Arg(16)->Arg(17)->Arg(1'000)->Arg(100'000);

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv,
                         {
                             {"read/Corvane/20000", "read/simdjson/20000", "", 2},
                             {"read/Corvane/1000000", "read/simdjson/1000000", "", 2},
                             {"read/Corvane/20000", "read/Boost/20000", "", 0.67},
                             {"read/Corvane/1000000", "read/Boost/1000000", "", 0.67},
                             {"read/Corvane/20000", "read/RapidJSON/20000", "", 1},
                             {"read/Corvane/1000000", "read/RapidJSON/1000000", "", 1},
                             {"write/Corvane/20000", "write/simdjson/20000", "", 1.1},
                             {"write/Corvane/1000000", "write/simdjson/1000000", "", 1.1},
                         });
}
