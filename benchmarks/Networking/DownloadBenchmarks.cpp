// The download road above the transport: the cached road against nginx on 127.0.0.1 with 64 requests in flight,
// contexts that are replaced in a burst, and the cache of typed APIs.
//
//     DownloadBenchmarks --benchmark_filter=Many
//     taskset -c 0 DownloadBenchmarks --benchmark_filter='Replace|Provider'

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/ApiDataProvider.hpp>
#include <Corvane/Platform/Dispatch/Actor.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/HTTP/CurlClients.hpp"
#include "benchmarks/HTTP/Measure.hpp"

namespace {

using namespace corvane;
using SteadyClock = std::chrono::steady_clock;

std::shared_ptr<ApiDataProvider> makeProvider() {
    auto configuration = URLSessionConfiguration::ephemeral();
    configuration.maximumConnectionsPerHost = 64;
    return ApiDataProvider::make(SimpleHttpManager::make(configuration), DataCache::make("benchmark.json"));
}

/// An application that keeps 64 contexts loading, each anew as soon as it has been answered.
class CachedRoad {
  public:
    void getMany(std::size_t document, std::size_t total) {
        url_ = *URL::parse(documentURL(document));
        size_ = documentSizes.at(document);
        toStart_ = total;
        toFinish_ = total;
        for (int context = 0; context < 64; ++context)
            start(std::to_string(context));
        while (toFinish_ > 0)
            RunLoop::main().runOnce();
    }

  private:
    void start(const std::string& context) {
        if (toStart_ == 0) return;
        --toStart_;
        provider_->loadCachedData(ApiRequest::make({.url = url_}), context,
                                  [this, context](const ApiResponse& response) {
                                      const auto data = response.data();
                                      require(data && data->size() == size_, "Corvane's body");
                                      --toFinish_;
                                      start(context);
                                  });
    }

    std::shared_ptr<ApiDataProvider> provider_ = makeProvider();
    URL url_ = *URL::parse(documentURL(0));
    std::size_t size_ = 0;
    std::size_t toStart_ = 0;
    std::size_t toFinish_ = 0;
};

/// A port on which connections are made and nothing is ever answered.
class SilentPort {
  public:
    SilentPort() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        require(::bind(socket_, general, size) == 0 && ::listen(socket_, 1024) == 0, "listen");
        ::getsockname(socket_, general, &size);
        url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + '/';
    }

    ~SilentPort() { ::close(socket_); }

    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;

    [[nodiscard]] URL url() const { return *URL::parse(url_); }

  private:
    int socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    std::string url_;
};

/// So many contexts are loading; each is loaded anew, until all replaced loads have called back.
void ReplaceContexts(benchmark::State& state) {
    const SilentPort silence;
    const auto contexts = static_cast<std::size_t>(state.range(0));
    const auto request = ApiRequest::make({.url = silence.url()});
    for (auto iteration : state) {
        const auto http = SimpleHttpManager::make();
        const auto provider = ApiDataProvider::make(http, DataCache::make("benchmark.json"));
        std::size_t cancelled = 0;
        const auto loadAll = [&] {
            for (std::size_t context = 0; context < contexts; ++context) {
                provider->loadCachedData(request, std::to_string(context), [&](const ApiResponse& response) {
                    require(response.error() && response.error()->code() == -999, "cancelled");
                    ++cancelled;
                });
            }
        };
        loadAll();
        provider->syncQueue()->sync([] {});
        const auto start = SteadyClock::now();
        loadAll();
        while (cancelled < contexts)
            RunLoop::main().runOnce();
        state.SetIterationTime(std::chrono::duration<double>(SteadyClock::now() - start).count());
        http->session()->invalidateAndCancel();
        while (cancelled < 2 * contexts)
            RunLoop::main().runOnce();
    }
    state.counters["us_per_context"] =
        benchmark::Counter(static_cast<double>(contexts) * 1e-6 * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// The least that an operation of an actor takes: to the actor and back.
class Idle : public Actor {
  public:
    Idle() : Actor("idle") {}

    Task<> pass() { co_return; }
};

constexpr int operations = 2000;

/// One task on the pool that does many operations one after the other.
template <class Operation>
void measureAwaited(benchmark::State& state, Operation operation) {
    const auto repeat = [&operation]() -> Task<> {
        for (int i = 0; i < operations; ++i)
            co_await operation();
    };
    for (auto iteration : state)
        runBlocking(on(DispatchQueue::global(), repeat));
    state.counters["ns_per_operation"] = benchmark::Counter(
        operations * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void ActorPass(benchmark::State& state) {
    Idle idle;
    measureAwaited(state, [&idle] { return idle.pass(); });
}

void ProviderSet(benchmark::State& state) {
    const auto cache = DataCacheProvider::make(3600, 3600);
    const Data body("{}");
    const std::string key = documentURL(0);
    measureAwaited(state, [&] { return cache->set(body, "then", SecondsSince1970(1), key); });
}

void ProviderRead(benchmark::State& state) {
    const auto cache = DataCacheProvider::make(3600, 3600);
    const std::string key = documentURL(0);
    runBlocking(cache->set(Data("{}"), "then", SecondsSince1970(1), key));
    measureAwaited(state, [&] { return cache->data(key); });
}

const std::string small = "/0/iterations:2/real_time";
const std::string large = "/1/iterations:2/real_time";

}  // namespace

int main(int argc, char** argv) {
    serveDocuments();
    curl_global_init(CURL_GLOBAL_ALL);

    for (const int document : {0, 1}) {
        benchmark::RegisterBenchmark("ManyCurlMultiPollAndStore", measureMany<CurlMultiPollAndStore>)
            ->Arg(document)
            ->Iterations(2)
            ->UseRealTime();
        benchmark::RegisterBenchmark("ManyCachedRoad", measureMany<CachedRoad>)
            ->Arg(document)
            ->Iterations(2)
            ->UseRealTime();
    }
    for (const int contexts : {1000, 10'000, 40'000})
        benchmark::RegisterBenchmark("ReplaceContexts", ReplaceContexts)->Arg(contexts)->UseManualTime();
    benchmark::RegisterBenchmark("ActorPass", ActorPass)->UseRealTime();
    benchmark::RegisterBenchmark("ProviderSet", ProviderSet)->UseRealTime();
    benchmark::RegisterBenchmark("ProviderRead", ProviderRead)->UseRealTime();

    const std::string road = "ManyCachedRoad";
    const std::string limit = "ManyCurlMultiPollAndStore";
    const std::string replace = "ReplaceContexts/";
    return runBenchmarks(argc, argv,
                         {{road + small, limit + small, "cpu_ms_per_1k", 1.15},
                          {road + large, limit + large, "cpu_ms_per_1k", 1.15},
                          // As linear as the caches of the processor let it be.
                          {replace + "10000/manual_time", replace + "1000/manual_time", "us_per_context", 1.25},
                          {replace + "40000/manual_time", replace + "1000/manual_time", "us_per_context", 1.5},
                          {"ProviderSet/real_time", "ActorPass/real_time", "ns_per_operation", 1.5},
                          {"ProviderRead/real_time", "ActorPass/real_time", "ns_per_operation", 1.5}});
}
