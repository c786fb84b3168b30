#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/ApiDataProvider.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {

using testing::LoopbackRequest;
using testing::LoopbackResponse;
using testing::LoopbackServer;

/// Gathers what callbacks bring, from any thread.
template <class T>
class Arrivals {
  public:
    struct Arrival {
        T value;
        bool isOnMain;
    };

    /// A callback that takes a `T`.
    [[nodiscard]] auto callback() {
        return [state = state_](T value) {
            {
                const std::lock_guard guard(state->lock);
                state->list.push_back({std::move(value), Thread::isMainThread()});
            }
            RunLoop::main().perform([] {});
        };
    }

    /// Pumps the main run loop until there are `count`.
    [[nodiscard]] std::vector<Arrival> wait(std::size_t count = 1) const {
        while (true) {
            {
                const std::lock_guard guard(state_->lock);
                if (state_->list.size() >= count) return state_->list;
            }
            RunLoop::main().runOnce();
        }
    }

  private:
    struct State {
        std::mutex lock;
        std::vector<Arrival> list;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// A provider with a session, a cache and a back end of its own.
class DownloadTest : public ::testing::Test {
  protected:
    [[nodiscard]] std::shared_ptr<const ApiRequest> request(std::string_view target,
                                                            ApiRequest::Fields fields = {.url = somewhere()}) const {
        fields.url = *URL::parse(server.url(target));
        return ApiRequest::make(std::move(fields));
    }

    [[nodiscard]] ApiResponse load(std::shared_ptr<const ApiRequest> request, bool isCached = true) const {
        Arrivals<ApiResponse> responses;
        if (isCached) {
            provider->loadCachedData(std::move(request), "context", responses.callback());
        } else {
            provider->loadData(std::move(request), "context", responses.callback());
        }
        const auto arrived = responses.wait();
        EXPECT_EQ(arrived.front().isOnMain, isCached);
        return arrived.front().value;
    }

    static URL somewhere() { return *URL::parse("http://localhost/"); }

    static std::int64_t code(const ApiResponse& response) { return response.error() ? response.error()->code() : 0; }

    LoopbackServer server;
    std::shared_ptr<SimpleHttpManager> httpManager = SimpleHttpManager::make();
    std::shared_ptr<DataCache> cache = DataCache::make("cache.json");
    std::shared_ptr<ApiDataProvider> provider = ApiDataProvider::make(httpManager, cache);
};

}  // namespace corvane
