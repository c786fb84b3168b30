#include <array>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <semaphore>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

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
using testing::LoopbackServer;

/// How many loads there are and what they are drawn from: CORVANE_SOAK_LOADS=100000 CORVANE_SOAK_SEED=7 TestProgram.
std::uint32_t setting(const char* name, std::uint32_t otherwise) {
    const char* const text = std::getenv(name);
    if (text != nullptr) std::from_chars(text, text + std::string_view(text).size(), otherwise);
    return otherwise;
}

/// What has become of the loads.
struct Ledger {
    /// Keeps loads from piling up.
    std::counting_semaphore<> room{96};
    std::atomic<std::size_t> callbacks = 0;
    std::atomic<std::size_t> swallowed = 0;
    std::atomic<std::size_t> lost = 0;
    std::atomic<std::size_t> doubled = 0;
    std::atomic<std::size_t> wrong = 0;
    std::atomic<std::size_t> ended = 0;
};

constexpr std::size_t contextCount = 12;

/// What was done on a road, in its order: the starts and cancellations of a context are given one at a time.
struct History {
    struct Context {
        std::mutex lock;
        std::atomic<std::uint64_t> lastEvent = 0;
    };

    std::array<Context, contextCount> contexts;
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
class Ticket {
  public:
    Ticket(Ledger& ledger, std::shared_ptr<const History> history, std::size_t context, std::uint64_t event,
           bool isManaged) noexcept
        : ledger_(ledger), history_(std::move(history)), context_(context), event_(event), isManaged_(isManaged) {}

    ~Ticket() {
        const bool hadCause = history_->isEnded || history_->contexts[context_].lastEvent > event_;
        ++(calls_ > 0 ? ledger_.callbacks : isManaged_ && hadCause ? ledger_.swallowed : ledger_.lost);
        if (calls_ > 1) ++ledger_.doubled;
        ledger_.room.release();
        // The ledger may go when it has heard of the last.
        ++ledger_.ended;
        RunLoop::main().perform([] {});
    }

    Ticket(const Ticket&) = delete;
    Ticket& operator=(const Ticket&) = delete;

    void call(bool isRight) {
        ++calls_;
        if (!isRight) ++ledger_.wrong;
    }

  private:
    Ledger& ledger_;
    const std::shared_ptr<const History> history_;
    const std::size_t context_;
    const std::uint64_t event_;
    const bool isManaged_;
    std::atomic<unsigned> calls_ = 0;
};

class DownloadSoak : public ::testing::Test {
  protected:
    static constexpr unsigned faultCount = static_cast<unsigned>(LoopbackFault::neverAnswer) + 1;
    static constexpr unsigned soundCount = 40;

    DownloadSoak() {
        for (unsigned i = 0; i < soundCount; ++i) {
            const std::string target = '/' + std::to_string(i);
            server.route("GET", target, [target, i](const LoopbackRequest& request) -> LoopbackResponse {
                if (request.header("If-Modified-Since")) return {.status = 304};
                if (i % 8 == 7) return {.status = 404};
                return LoopbackResponse::json(body(target), i % 8 == 6 ? 503 : 200).with("Last-Modified", target);
            });
        }
        for (unsigned i = 0; i < faultCount; ++i) {
            const std::string target = '/' + std::to_string(soundCount + i);
            server.route("GET", target, LoopbackResponse::json(body(target)).with(static_cast<LoopbackFault>(i)));
        }
    }

    static std::string body(const std::string& target) { return "{\"is\":\"" + target + "\"}"; }

    /// One of the roads. When it is replaced first, the manager and the provider before it go at once, whatever they
    /// are doing; their session is ended some time later, because some of their loads are never answered.
    Road road(std::size_t number, bool isReplaced) {
        const std::lock_guard guard(lock_);
        if (isReplaced) {
            Road& former = former_.emplace_back(std::exchange(roads_[number], Road()));
            former.manager.reset();
            former.provider.reset();
            if (former_.size() > 3) {
                former_.front().end();
                former_.pop_front();
            }
        }
        return roads_[number];
    }

    /// Does one thing out of all that can be done, and issues one load.
    void act(std::mt19937& random) {
        const auto draw = [&random](unsigned below) { return static_cast<unsigned>(random() % below); };
        const auto oneIn = [&draw](unsigned count) { return draw(count) == 0; };
        const Road on = road(draw(roadCount), oneIn(300));
        const unsigned number = draw(contextCount);
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
        const std::uint64_t event = ++context.lastEvent;
        const auto ticket = std::make_shared<Ticket>(ledger, on.history, number, event, isManaged);
        if (isManaged) {
            perform(on, {.request = request, .context = name, .options = {}}, isCached, ticket);
            return;
        }
        const auto take = [ticket, target](const ApiResponse& response) {
            const auto data = response.data();
            ticket->call(!data || *data == Data("{}") || data->text() == body(target));
        };
        isCached ? on.provider->loadCachedData(request, name, take) : on.provider->loadData(request, name, take);
    }

    static void perform(const Road& on, const ApiRequestData& data, bool isCached,
                        const std::shared_ptr<Ticket>& ticket) {
        on.manager->performApi(data, isCached, [ticket, isCached, url = data.request->url()](const auto& result) {
            const auto* const success = result.asSuccess();
            const JSONValue* const is = success != nullptr ? success->json.find("is") : nullptr;
            ticket->call((is == nullptr || is->asString() == url.path()) && (!isCached || Thread::isMainThread()));
        });
    }

    /// Ends all roads; what was never answered ends with them.
    void end() {
        const std::lock_guard guard(lock_);
        former_.insert(former_.end(), roads_.begin(), roads_.end());
        for (const Road& each : former_)
            each.end();
    }

    LoopbackServer server;
    Ledger ledger;

  private:
    static constexpr unsigned roadCount = 4;

    std::mutex lock_;
    std::array<Road, roadCount> roads_;
    std::deque<Road> former_;
};

TEST_F(DownloadSoak, EveryCompletionIsCalledOnceOrItsLoadWasCancelled) {
    constexpr std::size_t threadCount = 4;
    const std::size_t loads = setting("CORVANE_SOAK_LOADS", 4000);
    const std::uint32_t seed = setting("CORVANE_SOAK_SEED", std::random_device{}());
    std::cout << "seed " << seed << '\n';

    std::atomic<std::size_t> threadsLeft = threadCount;
    std::vector<std::jthread> threads;
    for (std::size_t number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(seed + static_cast<unsigned>(number));
            for (std::size_t i = number; i < loads; i += threadCount)
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
    ledger.lost += loads - ledger.ended;
    std::cout << "loads " << loads << ", callbacks " << ledger.callbacks << ", cancelled without one "
              << ledger.swallowed << ", lost " << ledger.lost << ", doubled " << ledger.doubled << '\n';
    EXPECT_EQ(ledger.lost, 0U);
    EXPECT_EQ(ledger.doubled, 0U);
    EXPECT_EQ(ledger.wrong, 0U) << "answers to other requests, or on the wrong thread";
    EXPECT_EQ(ledger.callbacks + ledger.swallowed, loads);
}

}  // namespace
}  // namespace corvane
