#pragma once

#include <memory>
#include <optional>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>
#include <Corvane/Platform/HTTP/URLSessionConfiguration.hpp>
#include <Corvane/Platform/HTTP/URLSessionDataTask.hpp>
#include <Corvane/Platform/HTTP/URLSessionDelegate.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// Makes and runs HTTP requests that share a configuration, cookies and a delegate.
///
/// One network thread serves all sessions; it starts with the first task and sleeps while there is nothing to
/// do. Connections are kept and shared between sessions that trust the same authorities through the same
/// proxy. HTTP/1.1, and HTTP/2 where a TLS server offers it; gzip, deflate, br and zstd bodies are decoded;
/// up to 20 redirects are followed as RFC 9110, 15.4 has it (301 and 302 turn POST into GET, 303 turns
/// everything but HEAD into GET, 307 and 308 change nothing; Authorization and Cookie fields do not travel to
/// another origin).
///
/// A running task keeps its session alive; a session whose last handle goes lets its tasks end.
///
/// All operations may be called on any thread and inside any callback.
class CORVANE_EXPORT URLSession {
  public:
    /// Receives a task's outcome on the delegate queue, exactly once. On success the error is absent,
    /// response and body are present (a body of no bytes is empty, not absent). On failure the body is
    /// absent; the response is present when its head had arrived. An HTTP status is never a failure.
    using CompletionHandler = UniqueFunction<void(
        std::optional<Data> data, std::shared_ptr<const HTTPURLResponse> response, std::optional<PlatformError> error)>;

    /// Callbacks come on `delegateQueue`; without one, on a serial queue of the session's own. A queue that runs blocks
    /// side by side calls back for several tasks at once.
    [[nodiscard]] static std::shared_ptr<URLSession> make(URLSessionConfiguration configuration,
                                                          std::shared_ptr<URLSessionDelegate> delegate = nullptr,
                                                          std::shared_ptr<DispatchQueue> delegateQueue = nullptr);

    /// The same with a queue that is never destroyed: `DispatchQueue::main()`.
    [[nodiscard]] static std::shared_ptr<URLSession> make(URLSessionConfiguration configuration,
                                                          std::shared_ptr<URLSessionDelegate> delegate,
                                                          DispatchQueue& delegateQueue);

    /// The process's session with the default configuration and no delegate; it cannot be invalidated.
    [[nodiscard]] static const std::shared_ptr<URLSession>& shared();

    virtual ~URLSession() = default;
    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;

    /// Makes a suspended task that reports to its handler. A request that cannot be sent is a failure of its
    /// task. On an invalidated session the task fails with `URLError::cancelled` when resumed.
    [[nodiscard]] virtual std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                                       CompletionHandler completionHandler) = 0;

    /// Makes a suspended task that reports to the delegate.
    [[nodiscard]] virtual std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request) = 0;

    /// A text of the application's own, for logs.
    [[nodiscard]] virtual std::string sessionDescription() const = 0;
    virtual void setSessionDescription(std::string description) = 0;

    [[nodiscard]] virtual const URLSessionConfiguration& configuration() const noexcept = 0;

    /// Takes no new tasks; when those it has are over, tells the delegate and lets it go.
    virtual void finishTasksAndInvalidate() = 0;

    /// The same after cancelling every task it has.
    virtual void invalidateAndCancel() = 0;

  protected:
    URLSession() = default;
};

}  // namespace corvane
