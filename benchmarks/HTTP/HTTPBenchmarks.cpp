// HTTP/1.1 GETs on kept connections against nginx on 127.0.0.1, one worker. Every client gathers the whole body.
// One request at a time is to be pinned to one CPU, or it measures nothing but wake-ups across CPUs:
//
//     taskset -c 0 HTTPBenchmarks --benchmark_filter='Get|Conditional'
//     HTTPBenchmarks --benchmark_filter=Many
//     HTTPBenchmarks --benchmark_filter=Memory

#include <benchmark/benchmark.h>

#include "CorvaneClient.hpp"
#include "CurlClients.hpp"
#include "Measure.hpp"
#include "MemoryInFlight.hpp"
#include "QtClient.hpp"
#include "RawClients.hpp"
#include "benchmarks/Goals.hpp"

namespace {

template <class Client>
void Get(benchmark::State& state) {
    Client client;
    const auto document = static_cast<std::size_t>(state.range(0));
    measureEach(state, [&] { require(client.get(document) == documentSizes.at(document), "whole body"); });
}

template <class Client>
void Conditional(benchmark::State& state) {
    Client client;
    measureEach(state, [&] { require(client.getConditionally() == 304, "status 304"); });
}

template <class Client>
void registerOneAtATime(const std::string& name) {
    benchmark::RegisterBenchmark((name + "/Get2k").c_str(), Get<Client>)->Arg(0)->Iterations(3000)->UseRealTime();
    benchmark::RegisterBenchmark((name + "/Get200k").c_str(), Get<Client>)->Arg(1)->Iterations(600)->UseRealTime();
    benchmark::RegisterBenchmark((name + "/Conditional").c_str(), Conditional<Client>)->Iterations(3000)->UseRealTime();
}

template <class Client>
void registerMany(const std::string& name) {
    benchmark::RegisterBenchmark((name + "/Many2k").c_str(), measureMany<Client>)->Arg(0)->Iterations(2)->UseRealTime();
    benchmark::RegisterBenchmark((name + "/Many200k").c_str(), measureMany<Client>)
        ->Arg(1)
        ->Iterations(2)
        ->UseRealTime();
}

const std::string get2k = "/Get2k/0/iterations:3000/real_time";
const std::string get200k = "/Get200k/1/iterations:600/real_time";
const std::string conditional = "/Conditional/iterations:3000/real_time";
const std::string many2k = "/Many2k/0/iterations:2/real_time";
const std::string many200k = "/Many200k/1/iterations:2/real_time";

}  // namespace

int main(int argc, char** argv) {
    serveDocuments();
    curl_global_init(CURL_GLOBAL_ALL);

    registerOneAtATime<RawClient>("Raw");
    registerOneAtATime<CurlEasy>("CurlEasy");
    registerOneAtATime<CurlEasy512k>("CurlEasy512k");
    registerOneAtATime<CurlEasyThread>("CurlEasyThread");
    registerOneAtATime<CorvaneClient>("Corvane");
    registerMany<RawEpoll>("Raw");
    registerMany<CurlMultiPoll>("CurlMultiPoll");
    registerMany<CorvaneClient>("Corvane");
    benchmark::RegisterBenchmark("Corvane/MemoryInFlight", measureMemoryInFlight)->Iterations(1)->UseRealTime();
#if CORVANE_PEER_QT
    const QCoreApplication application(argc, argv);
    registerOneAtATime<QtClient>("Qt");
    registerMany<QtClient>("Qt");
#endif
    return runBenchmarks(argc, argv,
                         {{"Corvane" + get2k, "CurlEasy" + get2k, "p50_us", 1.15},
                          {"Corvane" + get200k, "CurlEasy" + get200k, "p50_us", 0.75},
                          {"Corvane" + conditional, "CurlEasy" + conditional, "p50_us", 1.1},
                          // How much of that the hop to another thread and back takes whoever makes it.
                          {"Corvane" + get2k, "CurlEasyThread" + get2k, "p50_us", 1.3},
                          {"Corvane" + conditional, "CurlEasyThread" + conditional, "p50_us", 1.3},
                          {"Corvane" + many2k, "CurlMultiPoll" + many2k, "per_s", 0.9, true},
                          {"Corvane" + many200k, "CurlMultiPoll" + many200k, "per_s", 0.9, true},
                          {"Corvane" + many2k, "CurlMultiPoll" + many2k, "cpu_ms_per_1k", 1.15},
                          {"Corvane" + many200k, "CurlMultiPoll" + many200k, "cpu_ms_per_1k", 1.15},
                          {"Corvane" + many2k, "Qt" + many2k, "per_s", 8, true},
                          {"Corvane" + many200k, "Qt" + many200k, "per_s", 8, true}});
}
