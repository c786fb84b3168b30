#include <utility>

#include <Corvane/Platform/HTTP/Private/Session.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>

namespace corvane {

std::shared_ptr<URLSession> URLSession::make(URLSessionConfiguration configuration,
                                             std::shared_ptr<URLSessionDelegate> delegate,
                                             std::shared_ptr<DispatchQueue> delegateQueue) {
    if (!delegateQueue) delegateQueue = DispatchQueue::serial("corvane.URLSession");
    DispatchQueue& queue = *delegateQueue;
    return std::make_shared<http::Session>(std::move(configuration), std::move(delegate), queue,
                                           std::move(delegateQueue), true);
}

std::shared_ptr<URLSession> URLSession::make(URLSessionConfiguration configuration,
                                             std::shared_ptr<URLSessionDelegate> delegate,
                                             DispatchQueue& delegateQueue) {
    return std::make_shared<http::Session>(std::move(configuration), std::move(delegate), delegateQueue, nullptr, true);
}

const std::shared_ptr<URLSession>& URLSession::shared() {
    static const auto* const session = [] {
        auto queue = DispatchQueue::serial("corvane.URLSession.shared");
        DispatchQueue& reference = *queue;
        return new std::shared_ptr<URLSession>(std::make_shared<http::Session>(
            URLSessionConfiguration::defaultConfiguration(), nullptr, reference, std::move(queue), false));
    }();
    return *session;
}

}  // namespace corvane
