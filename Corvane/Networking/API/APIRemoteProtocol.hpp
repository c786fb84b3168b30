#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Networking/API/URLSessionAPIResponse.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>
#include <Corvane/Platform/HTTP/URLSessionDataTask.hpp>

namespace corvane {

/// Performs the HTTP exchanges of a `CommonAPI`: the seam at which an application puts another transport or, in a test,
/// none. Operations are called on any thread, and several at once.
///
/// An absent `httpMethod` means GET; `ifModifiedSince` goes out byte for byte.
class CORVANE_EXPORT APIRemoteProtocol {
  public:
    virtual ~APIRemoteProtocol();
    APIRemoteProtocol(const APIRemoteProtocol&) = delete;
    APIRemoteProtocol& operator=(const APIRemoteProtocol&) = delete;

    /// What the server answered, a 304 (`notModified`), other redirects and faults being failures. The remote outlives
    /// the task.
    [[nodiscard]] virtual Task<std::expected<URLSessionAPIResponse, CommonAPIError>> performRequest(
        URL url, std::optional<std::string> ifModifiedSince, std::optional<std::string> httpMethod,
        std::optional<Data> httpBody) = 0;

    /// Makes the task that performs the same exchange, described for logs and not started yet: the caller resumes it.
    /// `completion` gets the outcome uninterpreted, on whatever thread the transport chooses. Null when there is no
    /// task to be had.
    [[nodiscard]] virtual std::shared_ptr<URLSessionDataTask> performRequestWithTask(
        URL url, std::string description, std::optional<std::string> ifModifiedSince,
        std::optional<std::string> httpMethod, std::optional<Data> httpBody,
        URLSession::CompletionHandler completion) = 0;

  protected:
    APIRemoteProtocol() = default;
};

}  // namespace corvane
