#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/HTTP/URLRequest.hpp>
#include <Corvane/Platform/PlatformError.hpp>

/// What may be sent, and what is sent next, as pure functions.
namespace corvane::http {

inline constexpr std::size_t maximumURLBytes = std::size_t{64} << 10U;
inline constexpr int maximumRedirects = 20;

/// What keeps the request from being sent, if anything does.
[[nodiscard]] std::optional<PlatformError> problem(const URLRequest& request);

/// What keeps the fields from being sent, if anything does.
[[nodiscard]] std::optional<PlatformError> problem(const std::vector<HTTPHeaderField>& fields);

/// Whether a response with this status sends the client to its Location (RFC 9110, 15.4).
[[nodiscard]] bool isRedirect(int statusCode) noexcept;

/// The request that follows a redirect: its URL, its method and body by the rules of the status, and without
/// the fields in `originBound` when it goes to another origin.
[[nodiscard]] std::expected<URLRequest, PlatformError> redirected(const URLRequest& request, int statusCode,
                                                                  std::string_view location,
                                                                  const std::vector<std::string>& originBound);

}  // namespace corvane::http
