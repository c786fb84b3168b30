#pragma once

#include <optional>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

class URLSession;
class URLSessionDataTask;

enum class URLSessionDelayedRequestDisposition : unsigned char { continueLoading, useNewRequest, cancel };

/// What to do with a request whose sending was put off.
struct URLSessionDelayedRequestDecision {
    URLSessionDelayedRequestDisposition disposition = URLSessionDelayedRequestDisposition::continueLoading;
    /// For `useNewRequest`.
    std::optional<URLRequest> newRequest;
};

/// A server's demand for credentials: a response with status 401 (RFC 9110, 11.6.1).
struct URLAuthenticationChallenge {
    URL url;
    /// The value of WWW-Authenticate.
    std::string wwwAuthenticate;
    /// How many credentials the server has refused for this task.
    int previousFailureCount = 0;
};

struct URLCredential {
    std::string user;
    std::string password;
};

enum class URLSessionAuthChallengeDisposition : unsigned char {
    useCredential,
    /// The response with status 401 is the task's response.
    performDefaultHandling,
    /// The task fails with `URLError::cancelled`.
    cancelAuthenticationChallenge,
};

struct URLSessionAuthChallengeDecision {
    URLSessionAuthChallengeDisposition disposition = URLSessionAuthChallengeDisposition::performDefaultHandling;
    /// For `useCredential`; without one the challenge is handled by default.
    std::optional<URLCredential> credential;
};

/// Hears of a session's events, one at a time on the session's delegate queue. The session holds its delegate
/// until `sessionDidBecomeInvalid` has been called or the session is gone. Override what matters.
class CORVANE_EXPORT URLSessionDelegate {
  public:
    virtual ~URLSessionDelegate();

    /// A request waits for connectivity (`URLSessionConfiguration::waitsForConnectivity`). At most once for each task,
    /// those with a completion handler included.
    virtual void taskIsWaitingForConnectivity(URLSession& session, URLSessionDataTask& task);

    /// A request that waited for connectivity is about to be sent, because the network is back or because half of its
    /// timeout has passed; also asked for tasks with a completion handler. The timeout does not run until this
    /// returns.
    virtual URLSessionDelayedRequestDecision taskWillBeginDelayedRequest(URLSession& session, URLSessionDataTask& task,
                                                                         const URLRequest& request);

    /// A server wants credentials. Asked for every task of the session.
    virtual URLSessionAuthChallengeDecision taskDidReceiveChallenge(URLSession& session, URLSessionDataTask& task,
                                                                    const URLAuthenticationChallenge& challenge);

    /// The body, whole and in one piece, right before `taskDidComplete`; not called for a response without
    /// body, a failed task or one with a completion handler.
    virtual void dataTaskDidReceiveData(URLSession& session, URLSessionDataTask& task, const Data& data);

    /// The task ended; exactly once, but not called for one with a completion handler.
    virtual void taskDidComplete(URLSession& session, URLSessionDataTask& task, std::optional<PlatformError> error);

    /// The last call a delegate gets: the session was invalidated and its last task has completed.
    virtual void sessionDidBecomeInvalid(URLSession& session, std::optional<PlatformError> error);

  protected:
    URLSessionDelegate() = default;
    URLSessionDelegate(const URLSessionDelegate&) = default;
    URLSessionDelegate& operator=(const URLSessionDelegate&) = default;
};

}  // namespace corvane
