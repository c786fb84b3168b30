#pragma once

#include <expected>
#include <optional>

#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Networking/API/URLSessionAPIResponse.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>

namespace corvane {

/// What an exchange came to, from all that is known of it. A failed transfer counts first, then a missing head, then
/// the status; whatever is no redirect and no fault is a success, 199 and 600 included. No bytes are an empty body.
[[nodiscard]] CORVANE_EXPORT std::expected<URLSessionAPIResponse, CommonAPIError> remoteOutcome(
    std::optional<Data> data, const HTTPURLResponse* response, const std::optional<AnyError>& error);

}  // namespace corvane
