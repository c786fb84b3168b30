#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>

namespace corvane {

/// How many instants an oracle is asked about, and which: CORVANE_ORACLE_SAMPLES and CORVANE_ORACLE_SEED, or a sample
/// that is another one each time. The seed is printed, so that a failure can be had again.
class OracleRun {
  public:
    OracleRun()
        : samples_(variable("CORVANE_ORACLE_SAMPLES", 20'000)),
          seed_(variable("CORVANE_ORACLE_SEED", std::random_device()())) {
        std::cout << "CORVANE_ORACLE_SAMPLES=" << samples_ << " CORVANE_ORACLE_SEED=" << seed_ << '\n';
        random_.seed(seed_);
    }

    [[nodiscard]] std::uint64_t samples() const { return samples_; }

    [[nodiscard]] std::int64_t between(std::int64_t least, std::int64_t most) {
        return std::uniform_int_distribution<std::int64_t>(least, most)(random_);
    }

  private:
    static std::uint64_t variable(const char* name, std::uint64_t otherwise) {
        const char* const text = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
        return text != nullptr ? std::stoull(text) : otherwise;
    }

    std::uint64_t samples_;
    std::uint64_t seed_;
    std::mt19937_64 random_;
};

}  // namespace corvane
