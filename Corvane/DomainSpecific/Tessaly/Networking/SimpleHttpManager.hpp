#pragma once

#include <expected>
#include <memory>
#include <string>
#include <unordered_map>

#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/BackgroundSessionDelegate.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpResponse.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Application/BackgroundTasks.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>
#include <Corvane/Platform/HTTP/URLSessionConfiguration.hpp>
#include <Corvane/Platform/HTTP/URLSessionDataTask.hpp>
#include <Corvane/Platform/HTTP/URLSessionDelegate.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// The lowest layer of the download road: sends simple requests over two sessions, and requests that shall survive
/// the application's going to the background over sessions of their own.
///
///     SimpleHttpManager::sharedInstance()->request(
///         SimpleHttpRequest::make({.url = URL::parse("https://example.org/fixtures")}),
///         [](SimpleHttpResponse response) { show(response); });
///
/// All operations may be called on any thread unless they say otherwise. Bodies are handed over as received, and
/// nothing is cached. A request ends by itself: a manager that goes away does not cancel what it has sent.
class CORVANE_EXPORT SimpleHttpManager final : public URLSessionDelegate,
                                               public std::enable_shared_from_this<SimpleHttpManager> {
  public:
    /// Called once, on the queue of the session that carried the request, not on the main thread. An empty one means
    /// that nobody wants to know.
    using Callback = UniqueFunction<void(SimpleHttpResponse response)>;

    /// The process's manager, made on first use and never destroyed.
    [[nodiscard]] static const std::shared_ptr<SimpleHttpManager>& sharedInstance();

    /// A manager of the caller's own, for an application with its own authorities, proxy or limits. Background
    /// sessions are made with `configuration` too.
    [[nodiscard]] static std::shared_ptr<SimpleHttpManager> make(
        URLSessionConfiguration configuration = URLSessionConfiguration::defaultConfiguration(),
        URLSessionConfiguration ephemeralConfiguration = URLSessionConfiguration::ephemeral());

    ~SimpleHttpManager() override;
    SimpleHttpManager(const SimpleHttpManager&) = delete;
    SimpleHttpManager& operator=(const SimpleHttpManager&) = delete;

    [[nodiscard]] const std::shared_ptr<URLSession>& session() const noexcept { return session_; }

    /// Keeps nothing from one request to the next: no cookies, caches or credentials.
    [[nodiscard]] const std::shared_ptr<URLSession>& ephemeralSession() const noexcept { return ephemeralSession_; }

    /// Sends `urlRequest` over `session` and forgets it.
    void request(URLRequest urlRequest);

    /// Sends `request` over the session it chooses. A request that cannot be made into a task calls back at once,
    /// on the calling thread.
    void request(std::shared_ptr<const SimpleHttpRequest> request, Callback callback);

    /// Makes the task of `request`, to be resumed by the caller. Fails with `SimpleHttpResponse::Errors::invalidUrl()`
    /// and without a callback when the request has no URL.
    [[nodiscard]] std::expected<std::shared_ptr<URLSessionDataTask>, AnyError> createTask(
        std::shared_ptr<const SimpleHttpRequest> request, Callback callback);

    /// Makes a task, to be resumed by the caller, that reports what came as it came.
    [[nodiscard]] std::shared_ptr<URLSessionDataTask> createTask(URLRequest urlRequest, bool isEphemeral,
                                                                 URLSession::CompletionHandler callback);

    /// The background road: sends `urlRequest` over a session of its own at high priority, protected by the background
    /// task "FinishNetworkTasks" until data comes, the transfer ends or the platform's patience does, and reports
    /// the JSON object that came to the delegate. The protection begins before this returns; off the main thread the
    /// request goes out as soon as the main queue gets to it.
    void startBackgroundTask(URLRequest urlRequest, std::string description,
                             SourceFileContext context = SourceFileContext::current());

    /// Hears of the background road's requests; held weakly. Main thread only.
    [[nodiscard]] std::shared_ptr<BackgroundSessionDelegate> delegate() const noexcept { return delegate_.lock(); }

    void setDelegate(std::weak_ptr<BackgroundSessionDelegate> delegate) noexcept { delegate_ = std::move(delegate); }

    /// The background tasks that protect running requests; none that has been ended is among them. Main thread only.
    [[nodiscard]] const std::unordered_map<const URLSessionDataTask*, BackgroundTasks::Identifier>&
    backgroundTaskIdForTask() const noexcept {
        return backgroundTaskIdForTask_;
    }

    // The delegate of the background road's sessions, on the main queue.
    URLSessionDelayedRequestDecision taskWillBeginDelayedRequest(URLSession& session, URLSessionDataTask& task,
                                                                 const URLRequest& request) override;
    URLSessionAuthChallengeDecision taskDidReceiveChallenge(URLSession& session, URLSessionDataTask& task,
                                                            const URLAuthenticationChallenge& challenge) override;
    void dataTaskDidReceiveData(URLSession& session, URLSessionDataTask& task, const Data& data) override;
    void taskDidComplete(URLSession& session, URLSessionDataTask& task, std::optional<PlatformError> error) override;

  private:
    SimpleHttpManager(URLSessionConfiguration configuration, URLSessionConfiguration ephemeralConfiguration);

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> makeTask(URLRequest urlRequest,
                                                               std::shared_ptr<const SimpleHttpRequest> request,
                                                               Callback callback);
    void endBackgroundTask(const URLSessionDataTask* task);
    void reportFailure(URLSessionDataTask& task, const AnyError& error);

    URLSessionConfiguration backgroundConfiguration_;
    std::shared_ptr<URLSession> session_;
    std::shared_ptr<URLSession> ephemeralSession_;
    std::unordered_map<const URLSessionDataTask*, BackgroundTasks::Identifier> backgroundTaskIdForTask_;
    std::weak_ptr<BackgroundSessionDelegate> delegate_;
};

}  // namespace corvane
