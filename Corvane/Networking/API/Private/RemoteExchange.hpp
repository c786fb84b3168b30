#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Networking/API/URLSessionAPIResponse.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>

namespace corvane {

/// What a remote says of itself in each of its requests.
struct RemoteIdentity {
    /// Seconds; see `URLRequest::timeoutInterval`.
    double timeout;
    std::string userAgent;
};

/// The request for one exchange: past all caches, with the validator byte for byte.
[[nodiscard]] CORVANE_EXPORT URLRequest remoteRequest(const RemoteIdentity& identity, URL url,
                                                      const std::optional<std::string>& ifModifiedSince,
                                                      std::optional<std::string> httpMethod,
                                                      std::optional<Data> httpBody);

/// What an exchange came to, from all that is known of it. A failed transfer counts first, then a missing head, then
/// the status; whatever is no redirect and no fault is a success, 199 and 600 included. No bytes are an empty body.
[[nodiscard]] CORVANE_EXPORT std::expected<URLSessionAPIResponse, CommonAPIError> remoteOutcome(
    std::optional<Data> data, const HTTPURLResponse* response, std::optional<AnyError> error);

}  // namespace corvane
