#pragma once

#include <memory>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/APIRemoteProtocol.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>

namespace corvane {

/// The remote that asks the network.
///
///     auto remote = std::make_shared<URLSessionAPIRemote>(nullptr, 30, "scores/2.1");
///
/// Requests go past all caches. The remote never changes; any thread.
class CORVANE_EXPORT URLSessionAPIRemote final : public APIRemoteProtocol {
  public:
    /// `session` belongs to this remote: it is invalidated with it. Without one, requests go over a session that all
    /// such remotes share and that is made on first use: the default configuration, described as
    /// "Corvane.URLSessionAPIRemote". `timeout` is in seconds, see `URLRequest::timeoutInterval`; `userAgentValue` goes
    /// out with every request.
    URLSessionAPIRemote(std::shared_ptr<URLSession> session, double timeout, std::string userAgentValue);

    /// Cancels what is running on a session of its own.
    ~URLSessionAPIRemote() override;

    URLSessionAPIRemote(const URLSessionAPIRemote&) = delete;
    URLSessionAPIRemote& operator=(const URLSessionAPIRemote&) = delete;

    /// Cancelling the task cancels the transfer, which then fails with `urlSessionError`. An empty body is a success.
    [[nodiscard]] Task<std::expected<URLSessionAPIResponse, CommonAPIError>> performRequest(
        URL url, std::optional<std::string> ifModifiedSince, std::optional<std::string> httpMethod,
        std::optional<Data> httpBody) override;

    /// `completion` comes on the session's delegate queue.
    [[nodiscard]] std::shared_ptr<URLSessionDataTask> performRequestWithTask(
        URL url, std::string description, std::optional<std::string> ifModifiedSince,
        std::optional<std::string> httpMethod, std::optional<Data> httpBody,
        URLSession::CompletionHandler completion) override;

  private:
    [[nodiscard]] const std::shared_ptr<URLSession>& session() const;
    [[nodiscard]] URLRequest request(URL url, const std::optional<std::string>& ifModifiedSince,
                                     std::optional<std::string> httpMethod, std::optional<Data> httpBody) const;

    const std::shared_ptr<URLSession> session_;
    const double timeout_;
    const std::string userAgentValue_;
};

}  // namespace corvane
