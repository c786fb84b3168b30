// Looking items up in an ordered set, in no order, among few and among many.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Collections/OrderedIdentifiableItemSet.hpp>

#include "../Goals.hpp"

namespace {

struct Team {
    std::int64_t id;
    std::string name;
};

/// Between the identifiers of neighbours.
constexpr std::int64_t spread = 7919;

std::vector<Team> teams(std::int64_t count) {
    std::vector<Team> teams;
    for (std::int64_t i = 0; i < count; ++i)
        teams.push_back({i * spread, "Rovers"});
    return teams;
}

/// What is asked for, in an order that no cache foresees.
std::vector<std::int64_t> questions(std::int64_t count) {
    std::vector<std::int64_t> ids;
    for (const Team& team : teams(count))
        ids.push_back(team.id);
    std::ranges::shuffle(ids, std::minstd_rand(12));
    return ids;
}

template <class LookUp>
void ask(benchmark::State& state, const std::vector<std::int64_t>& asked, LookUp lookUp) {
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lookUp(asked[next]));
        if (++next == asked.size()) next = 0;
    }
}

void ItemFor(benchmark::State& state) {
    corvane::OrderedIdentifiableItemSet<Team> set;
    set.replaceExistingItems(teams(state.range()));
    ask(state, questions(state.range()), [&](std::int64_t id) { return set.itemFor(id); });
}

void ItemAt(benchmark::State& state) {
    corvane::OrderedIdentifiableItemSet<Team> set;
    set.replaceExistingItems(teams(state.range()));
    ask(state, questions(state.range()), [&](std::int64_t id) { return set.itemAt(id / spread); });
}

/// The least that does it: the standard's table and its hash, which is no hash for integers.
void Limit(benchmark::State& state) {
    std::unordered_map<std::int64_t, Team> table;
    table.reserve(static_cast<std::size_t>(state.range()));
    for (Team& team : teams(state.range()))
        table.emplace(team.id, std::move(team));
    ask(state, questions(state.range()), [&](std::int64_t id) { return &table.find(id)->second; });
}

BENCHMARK(ItemFor)->Arg(100)->Arg(100'000);
BENCHMARK(ItemAt)->Arg(100)->Arg(100'000);
BENCHMARK(Limit)->Arg(100)->Arg(100'000);

void Append(benchmark::State& state) {
    const std::vector<Team> all = teams(state.range());
    for (auto _ : state) {
        corvane::OrderedIdentifiableItemSet<Team> set;
        for (const Team& team : all)
            benchmark::DoNotOptimize(set.append(team));
    }
    state.counters["perItem"] =
        benchmark::Counter(static_cast<double>(state.range()),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(Append)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    // A thousand times the items cost no more than what the processor's caches then miss.
    return runBenchmarks(argc, argv,
                         {{"ItemFor/100000", "Limit/100000", "", 1.5}, {"ItemFor/100000", "ItemFor/100", "", 4.0}});
}
