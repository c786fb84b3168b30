#include "Goals.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <numeric>

#include <benchmark/benchmark.h>

namespace {

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

double deviation(const std::vector<double>& values) {
    const double count = static_cast<double>(values.size());
    const double mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
    const double squares = std::accumulate(values.begin(), values.end(), 0.0, [mean](double sum, double value) {
        return sum + (value - mean) * (value - mean);
    });
    return values.size() < 2 ? 0 : std::sqrt(squares / (count - 1));
}

/// Shows the medians only, and remembers every repetition for the goals.
class Reporter : public benchmark::ConsoleReporter {
  public:
    Reporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> shown;
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) repetitions_[run.run_name.str()].push_back(run);
            if (run.run_type == Run::RT_Iteration ? run.repetitions == 1 : run.aggregate_name == "median") {
                shown.push_back(run);
            }
        }
        ConsoleReporter::ReportRuns(shown);
    }

    void print(const Goal& goal) const {
        const std::vector<double> mine = valuesOf(goal.row, goal.measure);
        const std::vector<double> theirs = valuesOf(goal.peer, goal.measure);
        if (mine.empty() || theirs.empty()) return;
        std::vector<double> ratios;
        for (std::size_t i = 0; i < std::min(mine.size(), theirs.size()); ++i)
            ratios.push_back(mine[i] / theirs[i]);
        const double ratio = median(mine) / median(theirs);
        const double spread = deviation(ratios);
        const bool isMet = goal.moreIsBetter ? ratio >= goal.ratio - spread : ratio <= goal.ratio + spread;
        std::printf("%-8s %6.3f +- %.3f  (%s %.2f)  %s of %s to %s\n", isMet ? "met" : "NOT MET", ratio, spread,
                    goal.moreIsBetter ? "at least" : "at most", goal.ratio,
                    goal.measure.empty() ? "time" : goal.measure.c_str(), goal.row.c_str(), goal.peer.c_str());
    }

  private:
    [[nodiscard]] std::vector<double> valuesOf(const std::string& row, const std::string& measure) const {
        std::vector<double> values;
        const auto found = repetitions_.find(row);
        if (found == repetitions_.end()) return values;
        for (const Run& run : found->second) {
            if (measure.empty()) {
                values.push_back(run.GetAdjustedRealTime());
            } else if (const auto counter = run.counters.find(measure); counter != run.counters.end()) {
                values.push_back(counter->second);
            }
        }
        return values;
    }

    std::map<std::string, std::vector<Run>> repetitions_;
};

}  // namespace

int runBenchmarks(int argc, char** argv, const std::vector<Goal>& goals) {
    // Before the caller's arguments, so that those win.
    std::string repetitions = "--benchmark_repetitions=5";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments{argv[0], repetitions.data(), interleaving.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n");
    for (const Goal& goal : goals)
        reporter.print(goal);
    return 0;
}
