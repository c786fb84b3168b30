// One message of two integers, a text and a floating-point number.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Platform/Logging/Logger.hpp>
#include <Corvane/Platform/Logging/Logging.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>

#include "../Goals.hpp"

#if CORVANE_PEER_SPDLOG
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>
#endif

namespace {

struct Message {
    int done = 42;
    int all = 7;
    std::string url = "https://api.example/fixtures/2024";
    double milliseconds = 12.75;
};

Message message;

struct NullSink final : corvane::LogSink {
    void write(const corvane::LogEntry& entry) noexcept override { benchmark::DoNotOptimize(entry.message.data()); }
};

/// Puts a sink that drops its entries in force.
class NullLogging {
  public:
    explicit NullLogging(corvane::LogLevel level)
        : sink_(corvane::Logging::setSink(std::make_shared<NullSink>())), level_(corvane::Logging::setLevel(level)) {}

    ~NullLogging() {
        corvane::Logging::setLevel(level_);
        corvane::Logging::setSink(std::move(sink_));
    }

    NullLogging(const NullLogging&) = delete;
    NullLogging& operator=(const NullLogging&) = delete;

  private:
    std::shared_ptr<corvane::LogSink> sink_;
    corvane::LogLevel level_;
};

/// Stands for a statement in the code that logs, so it is no call of its own.
[[gnu::always_inline]] inline void log(const corvane::Logger& logger) {
    logFormatted(logger, corvane::LogLevel::info, std::source_location::current(),
                 FMT_COMPILE("fetch {} of {} {} took {:.2f} ms"), message.done, message.all, message.url,
                 message.milliseconds);
}

void Disabled(benchmark::State& state) {
    const NullLogging logging(corvane::LogLevel::error);
    const corvane::Logger logger("benchmarks", "disabled");
    for (auto _ : state) {
        log(logger);
        benchmark::ClobberMemory();
    }
}

std::atomic<int> limitLevel = 3;

[[gnu::noinline]] void logNothing(const Message&) {
    benchmark::ClobberMemory();
}

void DisabledLimit(benchmark::State& state) {
    for (auto _ : state) {
        if (limitLevel.load(std::memory_order_relaxed) <= 1) logNothing(message);
        benchmark::ClobberMemory();
    }
}

void Null(benchmark::State& state) {
    const NullLogging logging(corvane::LogLevel::info);
    const corvane::Logger logger("benchmarks", "null");
    for (auto _ : state)
        log(logger);
}

void NullTwoThreads(benchmark::State& state) {
    static const NullLogging logging(corvane::LogLevel::info);
    const corvane::Logger logger("benchmarks", "null");
    for (auto _ : state)
        log(logger);
}

void NullLimit(benchmark::State& state) {
    for (auto _ : state) {
        fmt::memory_buffer line;
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        fmt::format_to(std::back_inserter(line), FMT_COMPILE("[{}.{:03}] fetch {} of {} {} took {:.2f} ms"),
                       now / 1000000000, now / 1000000 % 1000, message.done, message.all, message.url,
                       message.milliseconds);
        benchmark::DoNotOptimize(line.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(Disabled);
BENCHMARK(DisabledLimit);
BENCHMARK(Null);
BENCHMARK(NullLimit);

#if CORVANE_PEER_SPDLOG
/// Applies the pattern and drops the bytes.
struct PatternSink final : spdlog::sinks::base_sink<std::mutex> {
    void sink_it_(const spdlog::details::log_msg& entry) override {
        spdlog::memory_buf_t line;
        formatter_->format(entry, line);
        benchmark::DoNotOptimize(line.data());
    }

    void flush_() override {}
};

void logToSpdlog(benchmark::State& state, spdlog::level::level_enum level) {
    const auto logger = std::make_shared<spdlog::logger>("benchmarks", std::make_shared<PatternSink>());
    logger->set_level(level);
    for (auto _ : state) {
        SPDLOG_LOGGER_INFO(logger, "fetch {} of {} {} took {:.2f} ms", message.done, message.all, message.url,
                           message.milliseconds);
        benchmark::ClobberMemory();
    }
}

void DisabledSpdlog(benchmark::State& state) {
    logToSpdlog(state, spdlog::level::warn);
}

void NullSpdlog(benchmark::State& state) {
    logToSpdlog(state, spdlog::level::info);
}

BENCHMARK(DisabledSpdlog);
BENCHMARK(NullSpdlog);
#endif

BENCHMARK(NullTwoThreads)->Threads(2)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    return runBenchmarks(argc, argv,
                         {{"Disabled", "DisabledLimit", "", 1.3},
                          {"Disabled", "DisabledSpdlog", "", 0.2},
                          {"Null", "NullLimit", "", 1.3},
                          {"Null", "NullSpdlog", "", 0.65}});
}
