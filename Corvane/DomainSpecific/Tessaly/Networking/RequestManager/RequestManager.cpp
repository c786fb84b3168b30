#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/Private/ResponseInterpretation.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManager.hpp>

namespace corvane {

ErrorEventTracker::~ErrorEventTracker() = default;

std::shared_ptr<RequestManager> RequestManager::make(std::shared_ptr<ApiDataProvider> dataProvider,
                                                     std::weak_ptr<ErrorEventTracker> errorTracker) {
    return std::shared_ptr<RequestManager>(new RequestManager(std::move(dataProvider), std::move(errorTracker)));
}

RequestManager::RequestManager(std::shared_ptr<ApiDataProvider> dataProvider,
                               std::weak_ptr<ErrorEventTracker> errorTracker) noexcept
    : dataProvider_(std::move(dataProvider)), errorTracker_(std::move(errorTracker)) {}

void RequestManager::performApi(const ApiRequestData& data, bool useCaching, Completion completion) {
    auto convert = [weak = weak_from_this(), request = data.request,
                    completion = std::move(completion)](const ApiResponse& response) mutable {
        auto [result, reportedCode] = interpret(response);
        if (reportedCode) {
            const auto self = weak.lock();
            const auto tracker = self ? self->errorTracker() : nullptr;
            if (tracker) tracker->trackErrorEvent(request->url().absoluteString(), *reportedCode);
        }
        if (result && completion) completion(*std::move(result));
    };
    if (useCaching) {
        dataProvider_->loadCachedData(data.request, data.context, std::move(convert));
    } else {
        dataProvider_->loadData(data.request, data.context, std::move(convert));
    }
}

}  // namespace corvane
