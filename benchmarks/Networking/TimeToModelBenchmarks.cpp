// From asking for 200 KiB of JSON over a kept connection to nginx on 127.0.0.1 to the structs in the hands of the main
// thread:
//
//     taskset -c 0 TimeToModelBenchmarks

#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/Networking/API/APIRepository.hpp>
#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>

#include "PocoModelClient.hpp"
#include "QtModelClient.hpp"
#include "benchmarks/Goals.hpp"
#include "benchmarks/HTTP/CurlClients.hpp"
#include "benchmarks/HTTP/Measure.hpp"
#include "benchmarks/JSON/Fixtures.hpp"
#include "benchmarks/JSON/Matchday.hpp"

namespace {

using namespace corvane;

constexpr std::size_t documentSize = 204'800;

constexpr const char* matchdayPath = "/plain/matchday.json";

std::string matchdayURL() {
    return origin().url(NginxOrigin::Endpoint::http, matchdayPath);
}

std::shared_ptr<CommonAPI<Matchday>> makeAPI() {
    auto api = std::make_shared<CommonAPI<Matchday>>(std::make_shared<URLSessionAPIRemote>(nullptr, 60, "benchmark"));
    api->update(URL::parse(matchdayURL()));
    return api;
}

/// A load that a task on the main thread awaits.
class CorvaneModel {
  public:
    Matchday get() {
        Matchday day;
        runBlocking([&]() -> Task<> {
            auto loaded = co_await api_->loadData();
            require(loaded.has_value(), "Corvane");
            day = std::move(loaded->model);
        });
        return day;
    }

  private:
    std::shared_ptr<CommonAPI<Matchday>> api_ = makeAPI();
};

/// The same through a repository, by callback and hop.
class CorvaneRepository {
  public:
    std::shared_ptr<const Matchday> get() {
        // A new one each time: one that is just giving its last answers would give more of them.
        const APIRepository repository(api_, 0, 0);
        std::shared_ptr<const Matchday> model;
        repository.fetchData(false, [&model](const auto& result, const FetchResultMetadata&) {
            asyncOnMain([&model, result] { model = result.value(); });
        });
        while (!model)
            RunLoop::main().runOnce();
        return model;
    }

  private:
    std::shared_ptr<CommonAPI<Matchday>> api_ = makeAPI();
};

/// By hand on the calling thread, which cannot do anything else meanwhile.
class CurlSimdjson {
  public:
    CurlSimdjson() { transfer_.body.reserve(documentSize + documentSize / 10); }

    Matchday get() {
        transfer_.body.clear();
        require(curl_easy_perform(transfer_.handle()) == CURLE_OK, "libcurl");
        transfer_.body.reserve(transfer_.body.size() + Data::padding);
        return read_(transfer_.body);
    }

  private:
    using Read = Matchday (*)(std::string_view);

    static Read reader() {
#ifdef __x86_64__
        if (__builtin_cpu_supports("avx2") != 0) return &readOnDemandHaswell;
#endif
        return &readOnDemand;
    }

    CurlTransfer transfer_{matchdayURL()};
    Read read_ = reader();
};

/// The same on a thread of its own, one futex word there and one back.
class CurlSimdjsonThread {
  public:
    ~CurlSimdjsonThread() {
        isOver_ = true;
        asked_.set();
        thread_.join();
    }

    Matchday get() {
        asked_.set();
        answered_.wait();
        return std::move(day_);
    }

  private:
    void serve() {
        for (asked_.wait(); !isOver_; asked_.wait()) {
            day_ = client_.get();
            answered_.set();
        }
    }

    CurlSimdjson client_;
    Matchday day_;
    bool isOver_ = false;
    limits::Event asked_;
    limits::Event answered_;
    std::thread thread_{[this] { serve(); }};
};

const Matchday& value(const Matchday& day) {
    return day;
}

const Matchday& value(const std::shared_ptr<const Matchday>& day) {
    return *day;
}

template <class Client>
void get(benchmark::State& state) {
    Client client;
    require(value(client.get()) == *JSONDecoder().decode<Matchday>(document(documentSize)), "the same structs");
    measureEach(state, [&] { benchmark::DoNotOptimize(client.get()); });
}

template <class Client>
void registerClient(const char* name) {
    benchmark::RegisterBenchmark(name, get<Client>)->Iterations(500)->UseRealTime();
}

}  // namespace

int main(int argc, char** argv) {
    require(origin().failure().empty(), origin().failure().c_str());
    origin().serve("matchday.json", document(documentSize).text());
    curl_global_init(CURL_GLOBAL_ALL);

    registerClient<CorvaneModel>("model/Corvane");
    registerClient<CorvaneRepository>("model/CorvaneRepository");
    registerClient<CurlSimdjson>("model/CurlSimdjson");
    registerClient<CurlSimdjsonThread>("model/CurlSimdjsonThread");
#if CORVANE_PEER_QT
    const QCoreApplication application(argc, argv);
    QtModelClient::url = QString::fromStdString(matchdayURL());
    registerClient<QtModelClient>("model/Qt");
#endif
#if HAS_POCO_WITH_RAPIDJSON
    PocoModelClient::port = origin().port(NginxOrigin::Endpoint::http);
    PocoModelClient::path = matchdayPath;
    registerClient<PocoModelClient>("model/PocoRapidJSON");
#endif
    std::vector<Goal> goals;
    const std::string suffix = "/iterations:500/real_time";
    for (const std::string client : {"Corvane", "CorvaneRepository"}) {
        for (const std::string peer : {"CurlSimdjson", "CurlSimdjsonThread"})
            goals.push_back({"model/" + client + suffix, "model/" + peer + suffix, "p50_us", 1.1});
    }
    for (const std::string peer : {"Qt", "PocoRapidJSON"})
        goals.push_back({"model/Corvane" + suffix, "model/" + peer + suffix, "p50_us", 0.5});
    return runBenchmarks(argc, argv, goals);
}
