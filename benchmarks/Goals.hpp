#pragma once

#include <string>
#include <vector>

/// What is asked of a benchmark: a measure of one row relative to the same measure of another row of the same run.
struct Goal {
    /// Names of benchmarks as Google Benchmark prints them.
    std::string row;
    std::string peer;
    /// A user counter; empty: the real time per iteration.
    std::string measure;
    /// The ratio to reach: at most this, or at least this for measures of which more is better.
    double ratio;
    bool moreIsBetter = false;
};

/// Runs the registered benchmarks as `main` does: five repetitions in random interleaving, unless the arguments say
/// otherwise. Prints medians and then each goal with the ratio of the medians, the standard deviation of that ratio
/// over the repetitions, and whether the goal is met, which it is within one such deviation.
int runBenchmarks(int argc, char** argv, const std::vector<Goal>& goals);
