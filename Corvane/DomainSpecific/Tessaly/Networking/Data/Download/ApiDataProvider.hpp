#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/ApiResponse.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCache.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/HTTP/URLSessionDataTask.hpp>
#include <Corvane/Platform/UnfairLock.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// Downloads JSON from the back end, at most one load at a time for each context: a newer one cancels the one before.
///
///     provider->loadCachedData(request, "scoreboard", [](const ApiResponse& response) { show(response); });
///
/// There are two roads. The plain one, `loadData`, hands over what came. The cached one, `loadCachedData`, besides
/// keeps every body that comes under the request's URL, those of error statuses deliberately included, and answers a
/// 304 (RFC 9110, section 15.4.5) with what it has kept. Neither adds a validator by itself: a back end answers with a
/// 304 when the request carries an `ifModifiedSince`.
///
/// A request that wants a POST but has no payload is deliberately not sent: it is answered with an empty JSON object.
///
/// All operations may be called on any thread. Every load calls back exactly once, also when it is replaced or
/// cancelled (with `URLError::cancelled`) and when the provider goes away, which cancels nothing.
class CORVANE_EXPORT ApiDataProvider final : public std::enable_shared_from_this<ApiDataProvider> {
  public:
    /// An empty one means that nobody wants to know: a load that only fills the cache.
    using Callback = UniqueFunction<void(ApiResponse response)>;

    /// A provider that sends its requests over `httpManager` and keeps bodies in `dataCache`, those of the process
    /// unless the application has its own.
    [[nodiscard]] static std::shared_ptr<ApiDataProvider> make(
        std::shared_ptr<SimpleHttpManager> httpManager = SimpleHttpManager::sharedInstance(),
        std::shared_ptr<DataCache> dataCache = DataCache::sharedInstance());

    ~ApiDataProvider();
    ApiDataProvider(const ApiDataProvider&) = delete;
    ApiDataProvider& operator=(const ApiDataProvider&) = delete;

    /// The plain road. `callback` is called on the queue of the HTTP session, not on the main thread; for a POST
    /// without payload on the calling thread, before this returns.
    ///
    /// A status is no error here. A response without a body is one, "Received empty data" or, for a 304 without a
    /// "Last-Modified", "Decryption error" with code 9998; a 304 with one is a response without data that
    /// `isNotModified`.
    void loadData(std::shared_ptr<const ApiRequest> request, std::string context, Callback callback);

    /// The cached road. `callback` is always called on the main thread, through `asyncOnMain`.
    ///
    /// A 304 gives the body and the validator that are kept for the URL, without a status; when nothing is kept, a
    /// response in which everything is absent. All else is as on the plain road.
    void loadCachedData(std::shared_ptr<const ApiRequest> request, std::string context, Callback callback);

    /// The same two, awaited: on whatever executor, and lazily. Cancelling the task that waits does not cancel the
    /// load.
    [[nodiscard]] Task<ApiResponse> loadData(std::shared_ptr<const ApiRequest> request, std::string context);
    [[nodiscard]] Task<ApiResponse> loadCachedData(std::shared_ptr<const ApiRequest> request, std::string context);

    /// Cancels the load that runs for `context`, if there is one and it was started by an earlier call.
    ///
    /// A replaced load that completes late deliberately takes its successor off the provider's books: that one goes on
    /// running, is not found here any more, and is not replaced by a newer one.
    void cancelLoadRequest(std::string context);

    /// The queue on which loads are started and cancelled, one after the other; its label is unique.
    [[nodiscard]] const std::shared_ptr<DispatchQueue>& syncQueue() const noexcept { return syncQueue_; }

  private:
    using DataTask = std::shared_ptr<URLSessionDataTask>;

    class Load;

    ApiDataProvider(std::shared_ptr<SimpleHttpManager> httpManager, std::shared_ptr<DataCache> dataCache);

    static Task<ApiResponse> await(std::shared_ptr<ApiDataProvider> self, std::shared_ptr<const ApiRequest> request,
                                   std::string context, bool isCached);
    void start(std::shared_ptr<const ApiRequest> request, std::string context, bool isCached, Callback callback);
    void run(const std::shared_ptr<Load>& load);
    void deliver(ApiResponse response, const ApiRequest& request, bool isCached, Callback callback) const;
    [[nodiscard]] DataTask removeTask(const std::string& context);
    void storeTask(const std::string& context, DataTask task);

    const std::shared_ptr<SimpleHttpManager> httpManager_;
    const std::shared_ptr<DataCache> dataCache_;
    const std::shared_ptr<DispatchQueue> syncQueue_;
    // Not the queue's alone: completions come on the queue of the session.
    UnfairLock tasksLock_;
    std::unordered_map<std::string, DataTask> tasks_;
};

}  // namespace corvane
