// Dictionaries that keep the order of insertion: text keys of 18 characters, integer values.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Platform/Collections/OrderedDictionary.hpp>

#include "benchmarks/Goals.hpp"

#if CORVANE_PEER_TSL
#include <tsl/ordered_map.h>
#endif

#if CORVANE_PEER_ASIO && __has_include(<boost/multi_index_container.hpp>)
#define HAS_MULTI_INDEX 1
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/sequenced_index.hpp>
#include <boost/multi_index_container.hpp>
#else
#define HAS_MULTI_INDEX 0
#endif

namespace {

template <class Entries>
std::int64_t sumOf(const Entries& entries) {
    std::int64_t sum = 0;
    for (const auto& [key, value] : entries)
        sum += value;
    return sum;
}

class CorvaneDictionary {
  public:
    void add(const std::string& key, std::int64_t value) { entries_.tryEmplace(key, value); }

    [[nodiscard]] std::int64_t at(const std::string& key) const { return *entries_.find(key); }

    void remove(const std::string& key) { entries_.remove(key); }

    [[nodiscard]] std::int64_t sum() const { return sumOf(entries_); }

  private:
    corvane::OrderedDictionary<std::string, std::int64_t> entries_;
};

#if CORVANE_PEER_TSL
class TslDictionary {
  public:
    void add(const std::string& key, std::int64_t value) { entries_.emplace(key, value); }

    [[nodiscard]] std::int64_t at(const std::string& key) const { return entries_.find(key)->second; }

    void remove(const std::string& key) { entries_.erase(key); }

    [[nodiscard]] std::int64_t sum() const { return sumOf(entries_); }

  private:
    tsl::ordered_map<std::string, std::int64_t> entries_;
};
#endif

#if HAS_MULTI_INDEX
class MultiIndexDictionary {
  public:
    void add(const std::string& key, std::int64_t value) { entries_.push_back({key, value}); }

    [[nodiscard]] std::int64_t at(const std::string& key) const { return entries_.get<1>().find(key)->value; }

    void remove(const std::string& key) { entries_.get<1>().erase(key); }

    [[nodiscard]] std::int64_t sum() const { return sumOf(entries_); }

  private:
    struct Entry {
        std::string key;
        std::int64_t value = 0;
    };

    boost::multi_index_container<
        Entry, boost::multi_index::indexed_by<
                   boost::multi_index::sequenced<>,
                   boost::multi_index::hashed_unique<boost::multi_index::member<Entry, std::string, &Entry::key>>>>
        entries_;
};
#endif

std::vector<std::string> keys(std::int64_t count) {
    std::vector<std::string> keys;
    for (std::int64_t i = 0; i < count; ++i)
        keys.push_back("match:2024:" + std::to_string(4'000'000 + i * 7));
    return keys;
}

std::vector<std::string> shuffledKeys(std::int64_t count) {
    auto shuffled = keys(count);
    std::ranges::shuffle(shuffled, std::mt19937(3));
    return shuffled;
}

template <class Dictionary>
Dictionary filled(std::int64_t count) {
    Dictionary dictionary;
    std::int64_t value = 0;
    for (const std::string& key : keys(count))
        dictionary.add(key, value++);
    return dictionary;
}

template <class Dictionary>
void build(benchmark::State& state) {
    const auto all = keys(state.range(0));
    for (auto _ : state) {
        Dictionary dictionary;
        std::int64_t value = 0;
        for (const std::string& key : all)
            dictionary.add(key, value++);
        benchmark::DoNotOptimize(dictionary);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Dictionary>
void look(benchmark::State& state) {
    const auto dictionary = filled<Dictionary>(state.range(0));
    const auto order = shuffledKeys(state.range(0));
    for (auto _ : state) {
        std::int64_t sum = 0;
        for (const std::string& key : order)
            sum += dictionary.at(key);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Dictionary>
void iterate(benchmark::State& state) {
    const auto dictionary = filled<Dictionary>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(dictionary.sum());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// Five hundred keys of all, keeping the order of the others.
template <class Dictionary>
void remove(benchmark::State& state) {
    const auto full = filled<Dictionary>(state.range(0));
    auto order = shuffledKeys(state.range(0));
    order.resize(500);
    for (auto _ : state) {
        state.PauseTiming();
        {
            Dictionary dictionary = full;
            state.ResumeTiming();
            for (const std::string& key : order)
                dictionary.remove(key);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 500);
}

template <class Dictionary>
void addRows(const std::string& name) {
    // Checked before anything is timed.
    auto dictionary = filled<Dictionary>(5'000);
    std::int64_t sum = 5'000 * 4'999 / 2;
    const auto order = shuffledKeys(5'000);
    for (const std::string& key : order) {
        const std::int64_t value = dictionary.at(key);
        if (value % 5 == 0) continue;
        dictionary.remove(key);
        sum -= value;
    }
    if (dictionary.sum() != sum) {
        std::fprintf(stderr, "%s adds up to something else\n", name.c_str());
        std::exit(1);
    }
    for (const std::int64_t size : {1'000, 100'000}) {
        benchmark::RegisterBenchmark(("build/" + name).c_str(), build<Dictionary>)->Arg(size);
        benchmark::RegisterBenchmark(("look/" + name).c_str(), look<Dictionary>)->Arg(size);
        benchmark::RegisterBenchmark(("iterate/" + name).c_str(), iterate<Dictionary>)->Arg(size);
        benchmark::RegisterBenchmark(("remove/" + name).c_str(), remove<Dictionary>)->Arg(size)->Iterations(4);
    }
}

}  // namespace

int main(int argc, char** argv) {
    addRows<CorvaneDictionary>("Corvane");
#if CORVANE_PEER_TSL
    addRows<TslDictionary>("tsl");
#endif
#if HAS_MULTI_INDEX
    addRows<MultiIndexDictionary>("MultiIndex");
#endif
    std::vector<Goal> goals;
    for (const char* operation : {"build", "look", "iterate"}) {
        for (const char* size : {"1000", "100000"}) {
            const std::string row = operation;
            goals.push_back({row + "/Corvane/" + size, row + "/tsl/" + size, "", 1.1});
        }
    }
    goals.push_back({"remove/Corvane/100000/iterations:4", "remove/MultiIndex/100000/iterations:4", "", 0.5});
    goals.push_back({"remove/Corvane/100000/iterations:4", "remove/tsl/100000/iterations:4", "", 0.001});
    return runBenchmarks(argc, argv, goals);
}
