#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/HTTP/HTTPHeaderField.hpp>

namespace corvane::testing {

/// A request as it arrived at a `LoopbackServer`.
struct CORVANE_EXPORT LoopbackRequest {
    std::string method = {};
    /// The request target, query included: "/fixtures?day=3".
    std::string target = {};
    /// "HTTP/1.1" or "HTTP/1.0".
    std::string version = {};
    /// The field lines in the order they came, repeated ones included; only the white space around values is
    /// gone.
    std::vector<HTTPHeaderField> headers = {};
    /// The body without its transfer coding.
    std::string body = {};
    /// Which of the server's connections brought it, counted from 1.
    std::uint64_t connection = 0;

    /// The target up to its query.
    [[nodiscard]] std::string_view path() const noexcept;

    /// What follows the first '?' of the target; empty without one.
    [[nodiscard]] std::string_view query() const noexcept;

    /// The value of the first field called `name`, whatever the case of its letters (RFC 9110, 5.1). The text
    /// lives as long as the request.
    [[nodiscard]] std::optional<std::string_view> header(std::string_view name) const noexcept;
};

}  // namespace corvane::testing
