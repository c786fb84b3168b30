#include <mutex>
#include <utility>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/ApiDataProvider.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/Private/ApiResponseRules.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/Private/InPlace.hpp>
#include <Corvane/Platform/HTTP/Private/BriefCompletion.hpp>
#include <Corvane/Platform/Text/Private/RandomUUIDText.hpp>

namespace corvane {

/// One load from its call to its callback. Whoever is to act next holds it: the block on the sync queue, then the
/// completion of the task. It holds the provider, so that the callback comes whoever has let go of that.
class ApiDataProvider::Load {
  public:
    Load(std::shared_ptr<ApiDataProvider> provider, std::shared_ptr<const ApiRequest> request, std::string context,
         bool isCached, Callback callback) noexcept
        : request_(std::move(request)),
          context_(std::move(context)),
          provider_(std::move(provider)),
          callback_(std::move(callback)),
          isCached_(isCached) {}

    [[nodiscard]] ApiDataProvider& provider() const noexcept { return *provider_; }

    [[nodiscard]] const ApiRequest& request() const noexcept { return *request_; }

    [[nodiscard]] const std::string& context() const noexcept { return context_; }

    [[nodiscard]] bool isCached() const noexcept { return isCached_; }

    void complete(const SimpleHttpResponse& response) {
        // By context alone, whichever task stands there: see `cancelLoadRequest`.
        static_cast<void>(provider_->removeTask(context_));
        provider_->deliver(apiResponse(response), *request_, isCached_, std::move(callback_));
    }

  private:
    const std::shared_ptr<const ApiRequest> request_;
    const std::string context_;
    const std::shared_ptr<ApiDataProvider> provider_;
    Callback callback_;
    const bool isCached_;
};

std::shared_ptr<ApiDataProvider> ApiDataProvider::make(std::shared_ptr<SimpleHttpManager> httpManager,
                                                       std::shared_ptr<DataCache> dataCache) {
    return std::shared_ptr<ApiDataProvider>(new ApiDataProvider(std::move(httpManager), std::move(dataCache)));
}

ApiDataProvider::ApiDataProvider(std::shared_ptr<SimpleHttpManager> httpManager, std::shared_ptr<DataCache> dataCache)
    : httpManager_(std::move(httpManager)),
      dataCache_(std::move(dataCache)),
      syncQueue_(DispatchQueue::serial("org.corvane.ApiDataSyncQueue." + randomUUIDText())) {}

ApiDataProvider::~ApiDataProvider() = default;

void ApiDataProvider::loadData(std::shared_ptr<const ApiRequest> request, std::string context, Callback callback) {
    start(std::move(request), std::move(context), false, std::move(callback));
}

void ApiDataProvider::loadCachedData(std::shared_ptr<const ApiRequest> request, std::string context,
                                     Callback callback) {
    start(std::move(request), std::move(context), true, std::move(callback));
}

Task<ApiResponse> ApiDataProvider::loadData(std::shared_ptr<const ApiRequest> request, std::string context) {
    return await(shared_from_this(), std::move(request), std::move(context), false);
}

Task<ApiResponse> ApiDataProvider::loadCachedData(std::shared_ptr<const ApiRequest> request, std::string context) {
    return await(shared_from_this(), std::move(request), std::move(context), true);
}

Task<ApiResponse> ApiDataProvider::await(std::shared_ptr<ApiDataProvider> self,
                                         std::shared_ptr<const ApiRequest> request, std::string context,
                                         bool isCached) {
    co_return co_await withContinuation<ApiResponse>([&](const Continuation<ApiResponse>& continuation) {
        self->start(std::move(request), std::move(context), isCached,
                    [continuation](ApiResponse response) { continuation.resume(std::move(response)); });
    });
}

void ApiDataProvider::cancelLoadRequest(std::string context) {
    syncQueue_->async([self = shared_from_this(), context = std::move(context)] {
        const auto task = self->removeTask(context);
        if (task && task->state() == URLSessionTaskState::running) task->cancel();
    });
}

void ApiDataProvider::start(std::shared_ptr<const ApiRequest> request, std::string context, bool isCached,
                            Callback callback) {
    if (request->usePost() && !request->payload()) {
        deliver(emptyPostResponse(), *request, isCached, std::move(callback));
        return;
    }
    InPlace::run(*syncQueue_,
                 [load = std::make_shared<Load>(shared_from_this(), std::move(request), std::move(context), isCached,
                                                std::move(callback))] { load->provider().run(load); });
}

void ApiDataProvider::run(const std::shared_ptr<Load>& load) {
    if (const auto former = removeTask(load->context())) former->cancel();
    const auto task = httpManager_->createTask(
        load->request().simpleHttpRequest(), [load](const SimpleHttpResponse& response) { load->complete(response); });
    if (!task) {
        // Calls back, so it is not for the thread that happens to run this.
        syncQueue_->async([load, error = task.error()] { load->complete(SimpleHttpResponse(error)); });
        return;
    }
    // The callback of the cached road goes to the main thread.
    if (load->isCached()) http::completeInPlace(**task);
    storeTask(load->context(), *task);
    (*task)->setTaskDescription(load->request().description());
    (*task)->resume();
}

void ApiDataProvider::deliver(ApiResponse response, const ApiRequest& request, bool isCached, Callback callback) const {
    if (!isCached) {
        if (callback) callback(std::move(response));
        return;
    }
    const auto now = Clock::current().now();
    auto cached = cachedResponse(std::move(response), request.url().absoluteString(), *dataCache_, now);
    // These texts are what log readers look for, wherever this call stands.
    constexpr SourceFileContext context("Domain Specific/Tessaly/Networking/Data/Download/ApiDataProvider",
                                        "loadCachedData(request:context:callback:)", 164);
    asyncOnMain(
        [callback = std::move(callback), response = std::move(cached)]() mutable {
            if (callback) callback(std::move(response));
        },
        context);
}

ApiDataProvider::DataTask ApiDataProvider::removeTask(const std::string& context) {
    const std::lock_guard guard(tasksLock_);
    auto entry = tasks_.extract(context);
    return entry ? std::move(entry.mapped()) : nullptr;
}

void ApiDataProvider::storeTask(const std::string& context, DataTask task) {
    const std::lock_guard guard(tasksLock_);
    tasks_.insert_or_assign(context, std::move(task));
}

}  // namespace corvane
