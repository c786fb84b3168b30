#include <utility>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

/// The back end's own credential stays with it, too.
URLSessionConfiguration bindingToken(URLSessionConfiguration configuration) {
    configuration.originBoundFields.emplace_back(HTTPHeaders::sessionToken);
    return configuration;
}

URLSessionConfiguration forBackground(URLSessionConfiguration configuration) {
    configuration.shouldUseExtendedBackgroundIdleMode = true;
    configuration.allowsCellularAccess = true;
    configuration.waitsForConnectivity = true;
    return configuration;
}

}  // namespace

BackgroundSessionDelegate::~BackgroundSessionDelegate() = default;

const std::shared_ptr<SimpleHttpManager>& SimpleHttpManager::sharedInstance() {
    static const auto* const shared = new std::shared_ptr<SimpleHttpManager>(make());
    return *shared;
}

std::shared_ptr<SimpleHttpManager> SimpleHttpManager::make(URLSessionConfiguration configuration,
                                                           URLSessionConfiguration ephemeralConfiguration) {
    return std::shared_ptr<SimpleHttpManager>(
        new SimpleHttpManager(bindingToken(std::move(configuration)), bindingToken(std::move(ephemeralConfiguration))));
}

SimpleHttpManager::SimpleHttpManager(URLSessionConfiguration configuration,
                                     URLSessionConfiguration ephemeralConfiguration)
    : backgroundConfiguration_(forBackground(configuration)),
      session_(URLSession::make(std::move(configuration))),
      ephemeralSession_(URLSession::make(std::move(ephemeralConfiguration))) {
    // "Corvan" is deliberate: these are the names that log readers look for.
    session_->setSessionDescription("SimpleHttpManager (Corvan)");
    ephemeralSession_->setSessionDescription("SimpleHttpManager (Corvan) \u2014 Ephemeral");
}

SimpleHttpManager::~SimpleHttpManager() = default;

void SimpleHttpManager::request(URLRequest urlRequest) {
    session_->dataTask(std::move(urlRequest))->resume();
}

void SimpleHttpManager::request(std::shared_ptr<const SimpleHttpRequest> request, Callback callback) {
    auto urlRequest = request->urlRequest();
    if (!urlRequest) {
        if (callback) callback(SimpleHttpResponse(SimpleHttpResponse::Errors::invalidUrl()));
        return;
    }
    std::string description = request->description();
    const auto task = makeTask(*std::move(urlRequest), std::move(request), std::move(callback));
    task->setTaskDescription(std::move(description));
    task->resume();
}

std::expected<std::shared_ptr<URLSessionDataTask>, AnyError> SimpleHttpManager::createTask(
    std::shared_ptr<const SimpleHttpRequest> request, Callback callback) {
    auto urlRequest = request->urlRequest();
    if (!urlRequest) return std::unexpected(SimpleHttpResponse::Errors::invalidUrl());
    return makeTask(*std::move(urlRequest), std::move(request), std::move(callback));
}

std::shared_ptr<URLSessionDataTask> SimpleHttpManager::makeTask(URLRequest urlRequest,
                                                                std::shared_ptr<const SimpleHttpRequest> request,
                                                                Callback callback) {
    const bool isEphemeral = request->isEphemeral();
    URLSession::CompletionHandler completion;
    if (callback) {
        completion = [request = std::move(request), callback = std::move(callback)](
                         std::optional<Data> data, const std::shared_ptr<const HTTPURLResponse>& urlResponse,
                         std::optional<PlatformError> error) mutable {
            callback(SimpleHttpResponse(request.get(), std::move(data), urlResponse, std::move(error)));
        };
    }
    return createTask(std::move(urlRequest), isEphemeral, std::move(completion));
}

std::shared_ptr<URLSessionDataTask> SimpleHttpManager::createTask(URLRequest urlRequest, bool isEphemeral,
                                                                  URLSession::CompletionHandler callback) {
    return (isEphemeral ? ephemeralSession_ : session_)->dataTask(std::move(urlRequest), std::move(callback));
}

void SimpleHttpManager::startBackgroundTask(URLRequest urlRequest, std::string description, SourceFileContext context) {
    const auto session = URLSession::make(backgroundConfiguration_, shared_from_this(), DispatchQueue::main());
    const auto task = session->dataTask(std::move(urlRequest));
    task->setPriority(URLSessionDataTask::highPriority);
    task->setTaskDescription(std::move(description));

    // Begun before the hop: a main thread that is about to leave must find something to wait for. The platform may
    // lose its patience before the hop is through; the main thread alone knows and looks.
    const auto isExpired = std::make_shared<bool>(false);
    const auto identifier = BackgroundTasks::begin(
        "FinishNetworkTasks", [weak = weak_from_this(), weakTask = std::weak_ptr(task), isExpired] {
            *isExpired = true;
            const auto self = weak.lock();
            const auto expired = weakTask.lock();
            if (self && expired) self->endBackgroundTask(expired.get());
        });
    auto start = [self = shared_from_this(), session, task, identifier, isExpired] {
        if (identifier != BackgroundTasks::invalid) {
            if (*isExpired) {
                BackgroundTasks::end(identifier);
            } else {
                self->backgroundTaskIdForTask_.emplace(task.get(), identifier);
            }
        }
        task->resume();
        // The running task owns the session, which holds its delegate, the manager, until the task has completed.
        session->finishTasksAndInvalidate();
    };
    // On the main thread whatever runs there will do, a task of a queue on top of the main one as well.
    if (Thread::isMainThread()) {
        start();
    } else {
        asyncOnMain(std::move(start), context);
    }
}

URLSessionDelayedRequestDecision SimpleHttpManager::taskWillBeginDelayedRequest(URLSession&, URLSessionDataTask&,
                                                                                const URLRequest&) {
    return {.disposition = URLSessionDelayedRequestDisposition::continueLoading, .newRequest = std::nullopt};
}

URLSessionAuthChallengeDecision SimpleHttpManager::taskDidReceiveChallenge(URLSession&, URLSessionDataTask&,
                                                                           const URLAuthenticationChallenge&) {
    return {.disposition = URLSessionAuthChallengeDisposition::performDefaultHandling, .credential = std::nullopt};
}

void SimpleHttpManager::dataTaskDidReceiveData(URLSession&, URLSessionDataTask& task, const Data& data) {
    endBackgroundTask(&task);
    if (data.empty()) return;
    const auto json = JSONSerialization::jsonObject(data);
    const JSONDictionary* const dictionary = json ? json->asDictionary() : nullptr;
    if (dictionary == nullptr) {
        reportFailure(task, PlatformError("Invalid response format", 999999));
    } else if (const auto listener = delegate()) {
        listener->backgroundTaskDidLoad(task, *dictionary);
    }
}

void SimpleHttpManager::taskDidComplete(URLSession&, URLSessionDataTask& task, std::optional<PlatformError> error) {
    endBackgroundTask(&task);
    if (error) reportFailure(task, *std::move(error));
}

void SimpleHttpManager::endBackgroundTask(const URLSessionDataTask* task) {
    // Taken out first: whichever of data, completion and expiration comes first ends it, the others find nothing.
    const auto entry = backgroundTaskIdForTask_.extract(task);
    if (!entry.empty()) BackgroundTasks::end(entry.mapped());
}

void SimpleHttpManager::reportFailure(URLSessionDataTask& task, const AnyError& error) {
    if (const auto listener = delegate()) listener->backgroundTaskDidFail(task, error);
}

}  // namespace corvane
