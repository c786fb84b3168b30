#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/ApiDataProvider.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {

using testing::LoopbackFault;
using testing::LoopbackRequest;
using testing::LoopbackResponse;

/// Gathers what callbacks bring, and whether they came on the main thread.
template <class T>
class Arrivals {
  public:
    [[nodiscard]] auto callback() {
        return [list = list_](T value) {
            DispatchQueue::main().async([list, value = std::move(value), isOnMain = Thread::isMainThread()] {
                list->emplace_back(value, isOnMain);
            });
        };
    }

    /// Pumps the main run loop until there are `count`; gives the last.
    std::pair<T, bool> wait(std::size_t count = 1) const {
        while (list_->size() < count)
            RunLoop::main().runOnce();
        return list_->back();
    }

  private:
    std::shared_ptr<std::vector<std::pair<T, bool>>> list_ = std::make_shared<std::vector<std::pair<T, bool>>>();
};

/// A provider with a session, a cache and a back end of its own.
class DownloadTest : public ::testing::Test {
  protected:
    [[nodiscard]] URL url(std::string_view target) const { return *URL::parse(server.url(target)); }

    [[nodiscard]] std::shared_ptr<const ApiRequest> request(std::string_view target) const {
        return ApiRequest::make({.url = url(target)});
    }

    [[nodiscard]] ApiResponse load(const std::shared_ptr<const ApiRequest>& request) const {
        return runBlocking(provider->loadCachedData(request, "context"));
    }

    static std::int64_t code(const ApiResponse& response) { return response.error() ? response.error()->code() : 0; }

    testing::LoopbackServer server;
    std::shared_ptr<DataCache> cache = DataCache::make("cache.json");
    std::shared_ptr<ApiDataProvider> provider = ApiDataProvider::make(SimpleHttpManager::make(), cache);
};

}  // namespace corvane
