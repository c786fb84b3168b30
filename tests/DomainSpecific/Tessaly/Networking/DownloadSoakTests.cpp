#include <array>
#include <atomic>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <random>
#include <semaphore>
#include <utility>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManager.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {
namespace {

using testing::LoopbackFault;
using testing::LoopbackRequest;
using testing::LoopbackResponse;

/// What has become of the loads.
struct Ledger {
    /// Keeps loads from piling up.
    std::counting_semaphore<> room{96};
    std::atomic<unsigned> lost = 0, doubled = 0, wrong = 0, ended = 0;
};

/// What was done on a road, in its order: the starts and cancellations of a context are given one at a time.
struct History {
    struct Context {
        std::mutex lock;
        std::atomic<unsigned> lastEvent = 0;
    };

    std::array<Context, 12> contexts;
    std::atomic<bool> isEnded = false;
};

/// A manager with all that it stands on.
struct Road {
    static URLSessionConfiguration configuration() {
        auto configuration = URLSessionConfiguration::ephemeral();
        configuration.maximumConnectionsPerHost = 64;
        return configuration;
    }

    void end() const {
        history->isEnded = true;
        http->session()->invalidateAndCancel();
    }

    std::shared_ptr<History> history = std::make_shared<History>();
    std::shared_ptr<SimpleHttpManager> http = SimpleHttpManager::make(configuration());
    std::shared_ptr<ApiDataProvider> provider = ApiDataProvider::make(http, DataCache::make("soak.json"));
    std::shared_ptr<RequestManager> manager = RequestManager::make(provider);
};

/// Goes with one completion. When it ends uncalled, that has to be a cancelled load of a request manager, and something
/// has to have been done against it after it was started.
struct Ticket {
    ~Ticket() {
        const bool hadCause = history->isEnded || context.lastEvent > event;
        if (calls == 0 && !(isManaged && hadCause)) ++ledger.lost;
        if (calls > 1) ++ledger.doubled;
        ledger.room.release();
        // The ledger may go when it has heard of the last.
        ++ledger.ended;
        RunLoop::main().perform([] {});
    }

    void call(bool isRight) {
        ++calls;
        if (!isRight) ++ledger.wrong;
    }

    Ledger& ledger;
    const std::shared_ptr<const History> history;
    const History::Context& context;
    const unsigned event;
    const bool isManaged;
    std::atomic<unsigned> calls = 0;
};

class DownloadSoak : public ::testing::Test {
  protected:
    static constexpr unsigned faultCount = static_cast<unsigned>(LoopbackFault::neverAnswer) + 1;
    static constexpr unsigned soundCount = 40;

    DownloadSoak() {
        for (unsigned i = 0; i < soundCount + faultCount; ++i) {
            const std::string target = '/' + std::to_string(i);
            server.route("GET", target, [target, i](const LoopbackRequest& request) -> LoopbackResponse {
                if (i >= soundCount)
                    return LoopbackResponse::json(body(target)).with(static_cast<LoopbackFault>(i - soundCount));
                if (request.header("If-Modified-Since")) return {.status = 304};
                if (i % 8 == 7) return {.status = 404};
                return LoopbackResponse::json(body(target), i % 8 == 6 ? 503 : 200).with("Last-Modified", target);
            });
        }
    }

    static std::string body(const std::string& target) { return R"({"is":")" + target + "\"}"; }

    /// One of the roads. When it is replaced first, the manager and the provider before it go at once, whatever they
    /// are doing; their session is ended by the next replacement, because some of their loads are never answered.
    Road road(std::size_t number, bool isReplaced) {
        const std::lock_guard guard(lock_);
        if (isReplaced) {
            Road& former = former_[number];
            former.end();
            former = std::exchange(roads_[number], Road());
            former.manager.reset();
            former.provider.reset();
        }
        return roads_[number];
    }

    /// Does one thing out of all that can be done, and issues one load.
    void act(std::mt19937& random) {
        const auto draw = [&random](std::size_t below) { return random() % below; };
        const auto oneIn = [&draw](unsigned count) { return draw(count) == 0; };
        const Road on = road(draw(roads_.size()), oneIn(300));
        const std::size_t number = draw(on.history->contexts.size());
        History::Context& context = on.history->contexts[number];
        const std::string target = '/' + std::to_string(oneIn(10) ? soundCount + draw(faultCount) : draw(soundCount));
        const auto request = ApiRequest::make({.url = *URL::parse(server.url(target)),
                                               .ifModifiedSince = oneIn(8) ? std::optional(target) : std::nullopt,
                                               .usePost = oneIn(20)});
        const bool isCancelled = oneIn(6);
        const bool isCached = oneIn(2);
        const bool isManaged = oneIn(2);
        const std::string name = std::to_string(number);

        ledger.room.acquire();
        const std::lock_guard guard(context.lock);
        if (isCancelled) {
            ++context.lastEvent;
            on.manager->cancelRequest(name);
        }
        const auto ticket = std::make_shared<Ticket>(ledger, on.history, context, ++context.lastEvent, isManaged);
        const auto take = [ticket, target](const ApiResponse& response) {
            const auto data = response.data();
            ticket->call(!data || *data == Data("{}") || data->text() == body(target));
        };
        const auto takeResult = [ticket, isCached, target](const RequestManagerResult& result) {
            const auto* const success = result.asSuccess();
            const JSONValue* const is = success != nullptr ? success->json.find("is") : nullptr;
            ticket->call((is == nullptr || is->asString() == target) && (!isCached || Thread::isMainThread()));
        };
        if (isManaged) {
            on.manager->performApi({.request = request, .context = name, .options = {}}, isCached, takeResult);
        } else {
            isCached ? on.provider->loadCachedData(request, name, take) : on.provider->loadData(request, name, take);
        }
    }

    /// Ends all roads; what was never answered ends with them.
    void end() {
        const std::lock_guard guard(lock_);
        for (const auto* const roads : {&former_, &roads_}) {
            for (const Road& each : *roads)
                each.end();
        }
    }

    testing::LoopbackServer server;
    Ledger ledger;

  private:
    std::mutex lock_;
    std::array<Road, 3> roads_, former_;
};

TEST_F(DownloadSoak, EveryCompletionIsCalledOnceOrItsLoadWasCancelled) {
    constexpr unsigned threadCount = 4;
    constexpr unsigned loads = 4000;
    const char* const given = std::getenv("CORVANE_SOAK_SEED");
    const unsigned seed =
        given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
    std::cout << "seed " << seed << '\n';

    std::atomic<unsigned> threadsLeft = threadCount;
    std::vector<std::jthread> threads;
    for (unsigned number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(seed + number);
            for (unsigned i = 0; i < loads / threadCount; ++i)
                act(random);
            --threadsLeft;
            RunLoop::main().perform([] {});
        });
    }
    while (threadsLeft > 0)
        RunLoop::main().runOnce();
    end();

    bool isPatient = true;
    const auto patience = Timer::scheduled(60, false, [&](Timer&) { isPatient = false; });
    while (ledger.ended < loads && isPatient)
        RunLoop::main().runOnce();
    patience->invalidate();
    threads.clear();
    EXPECT_EQ(ledger.ended, loads);
    EXPECT_EQ(ledger.lost, 0U);
    EXPECT_EQ(ledger.doubled, 0U);
    EXPECT_EQ(ledger.wrong, 0U) << "answers to other requests, or on the wrong thread";
}

}  // namespace
}  // namespace corvane
