#pragma once

#include <memory>
#include <string>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/ApiRequestData.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/ApiDataProvider.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/ErrorEventTracker.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManagerResult.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// Where an application asks for its JSON objects.
///
///     auto manager = RequestManager::make(ApiDataProvider::make(), tracker);
///     manager->performApi({.request = request, .context = "scoreboard"}, true, [](const RequestManagerResult& result)
///     {
///         if (const auto* success = result.asSuccess()) show(success->json);
///     });
///
/// All operations may be called on any thread. A manager that goes away cancels nothing and loses no completion; only
/// its reports end.
class CORVANE_EXPORT RequestManager final : public std::enable_shared_from_this<RequestManager> {
  public:
    /// May be empty.
    using Completion = UniqueFunction<void(RequestManagerResult result)>;

    /// `errorTracker` hears of failures while it exists; it is held weakly and may be absent.
    [[nodiscard]] static std::shared_ptr<RequestManager> make(
        std::shared_ptr<ApiDataProvider> dataProvider = ApiDataProvider::make(),
        std::weak_ptr<ErrorEventTracker> errorTracker = {});

    RequestManager(const RequestManager&) = delete;
    RequestManager& operator=(const RequestManager&) = delete;

    [[nodiscard]] const std::shared_ptr<ApiDataProvider>& dataProvider() const noexcept { return dataProvider_; }

    [[nodiscard]] std::shared_ptr<ErrorEventTracker> errorTracker() const {
        return errorTracker_.wrappedValue().lock();
    }

    void setErrorTracker(std::weak_ptr<ErrorEventTracker> errorTracker) {
        errorTracker_.setWrappedValue(std::move(errorTracker));
    }

    /// Loads `data.request` for `data.context`, by way of the cache or not, and gives what it came to: the JSON object,
    /// "not modified", or why there is neither. `completion` is called once, where the road of `ApiDataProvider` calls
    /// back: on the main thread with `useCaching`, elsewhere without.
    ///
    /// It is deliberately not called at all when the load was cancelled or replaced by a newer one for its context.
    ///
    /// The back end has to answer with a JSON object: any other JSON value stops the process. Reported to the tracker
    /// are, before `completion`: bodies that are no JSON, timeouts, and errors with a status of 400 and above. A status
    /// that comes with a body is no error.
    void performApi(const ApiRequestData& data, bool useCaching, Completion completion);

    /// `ApiDataProvider::cancelLoadRequest`.
    void cancelRequest(std::string context) { dataProvider_->cancelLoadRequest(std::move(context)); }

  private:
    RequestManager(std::shared_ptr<ApiDataProvider> dataProvider,
                   std::weak_ptr<ErrorEventTracker> errorTracker) noexcept;

    const std::shared_ptr<ApiDataProvider> dataProvider_;
    Atomic<std::weak_ptr<ErrorEventTracker>> errorTracker_;
};

}  // namespace corvane
