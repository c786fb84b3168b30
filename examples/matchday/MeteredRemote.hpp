#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/Networking/API/APIRemoteProtocol.hpp>

namespace matchday {

/// Counts the exchanges of another remote. Any thread.
class MeteredRemote final : public corvane::APIRemoteProtocol {
  public:
    struct Traffic {
        std::size_t requests = 0;
        std::size_t notModified = 0;
        std::size_t bytesReceived = 0;
        /// The sizes of the last bodies, by URL.
        std::map<std::string, std::size_t> sizes;
    };

    explicit MeteredRemote(std::shared_ptr<corvane::APIRemoteProtocol> remote) : remote_(std::move(remote)) {}

    [[nodiscard]] Traffic traffic() const { return traffic_.wrappedValue(); }

    [[nodiscard]] corvane::Task<std::expected<corvane::URLSessionAPIResponse, corvane::CommonAPIError>> performRequest(
        corvane::URL url, std::optional<std::string> ifModifiedSince, std::optional<std::string> httpMethod,
        std::optional<corvane::Data> httpBody) override;

    /// Not counted.
    [[nodiscard]] std::shared_ptr<corvane::URLSessionDataTask> performRequestWithTask(
        corvane::URL url, std::string description, std::optional<std::string> ifModifiedSince,
        std::optional<std::string> httpMethod, std::optional<corvane::Data> httpBody,
        corvane::URLSession::CompletionHandler completion) override;

  private:
    const std::shared_ptr<corvane::APIRemoteProtocol> remote_;
    corvane::Atomic<Traffic> traffic_{{}};
};

}  // namespace matchday
