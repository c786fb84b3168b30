#include <optional>
#include <stop_token>
#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/Networking/API/Private/RemoteExchange.hpp>
#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/HTTP/Private/BriefCompletion.hpp>

namespace corvane {
namespace {

using Outcome = std::expected<URLSessionAPIResponse, CommonAPIError>;

struct CancelTransfer {
    std::shared_ptr<URLSessionDataTask> task;

    void operator()() const { task->cancel(); }
};

Task<Outcome> exchange(std::shared_ptr<URLSession> session, URLRequest request) {
    std::optional<std::stop_callback<CancelTransfer>> cancellation;
    co_return co_await withContinuation<Outcome>([&](Continuation<Outcome> continuation) {
        const auto task = session->dataTask(
            std::move(request), [continuation = std::move(continuation)](
                                    std::optional<Data> data, const std::shared_ptr<const HTTPURLResponse>& response,
                                    std::optional<PlatformError> error) mutable {
                continuation.resume(remoteOutcome(std::move(data), response.get(), std::move(error)));
            });
        http::completeInPlace(*task);
        task->resume();
        cancellation.emplace(Task<>::stopToken(), CancelTransfer{task});
    });
}

const std::shared_ptr<URLSession>& defaultSession() {
    static const auto* const shared = [] {
        const auto session = URLSession::make(URLSessionConfiguration::defaultConfiguration());
        session->setSessionDescription("Corvane.URLSessionAPIRemote");
        return new std::shared_ptr<URLSession>(session);
    }();
    return *shared;
}

}  // namespace

APIRemoteProtocol::~APIRemoteProtocol() = default;

URLSessionAPIRemote::URLSessionAPIRemote(std::shared_ptr<URLSession> session, double timeout,
                                         std::string userAgentValue)
    : session_(std::move(session)), timeout_(timeout), userAgentValue_(std::move(userAgentValue)) {}

URLSessionAPIRemote::~URLSessionAPIRemote() {
    if (session_) session_->invalidateAndCancel();
}

Task<std::expected<URLSessionAPIResponse, CommonAPIError>> URLSessionAPIRemote::performRequest(
    URL url, std::optional<std::string> ifModifiedSince, std::optional<std::string> httpMethod,
    std::optional<Data> httpBody) {
    return exchange(session(), request(std::move(url), ifModifiedSince, std::move(httpMethod), std::move(httpBody)));
}

std::shared_ptr<URLSessionDataTask> URLSessionAPIRemote::performRequestWithTask(
    URL url, std::string description, std::optional<std::string> ifModifiedSince, std::optional<std::string> httpMethod,
    std::optional<Data> httpBody, URLSession::CompletionHandler completion) {
    auto task = session()->dataTask(
        request(std::move(url), ifModifiedSince, std::move(httpMethod), std::move(httpBody)), std::move(completion));
    task->setTaskDescription(std::move(description));
    return task;
}

URLRequest URLSessionAPIRemote::request(URL url, const std::optional<std::string>& ifModifiedSince,
                                        std::optional<std::string> httpMethod, std::optional<Data> httpBody) const {
    URLRequest request(std::move(url), URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData, timeout_);
    if (httpMethod) request.setHttpMethod(*std::move(httpMethod));
    request.setHttpBody(std::move(httpBody));
    request.setValue(userAgentValue_, HTTPHeaders::userAgent);
    if (ifModifiedSince) request.addValue(*ifModifiedSince, HTTPHeaders::ifModifiedSince);
    return request;
}

const std::shared_ptr<URLSession>& URLSessionAPIRemote::session() const {
    return session_ ? session_ : defaultSession();
}

}  // namespace corvane
