#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// The status codes that the download code reacts to, and range tests on any status code (RFC 9110, section
/// 15).
///
///     if (HTTPStatusCode::fromRawValue(status) == HTTPStatusCode::notModified) ...
///     if (HTTPStatusCode::isServerError(status)) ...
class HTTPStatusCode {
  public:
    enum Case : std::uint16_t {
        ok = 200,
        notModified = 304,
        notFound = 404,
        notAllowed = 405,
        gone = 410,
    };

    constexpr HTTPStatusCode(Case code) noexcept : code_(code) {}  // NOLINT(google-explicit-constructor)

    /// The case of a status code; absent for every code that is none of the five.
    [[nodiscard]] static constexpr std::optional<HTTPStatusCode> fromRawValue(std::int64_t status) noexcept {
        switch (status) {
            case ok:
                return ok;
            case notModified:
                return notModified;
            case notFound:
                return notFound;
            case notAllowed:
                return notAllowed;
            case gone:
                return gone;
            default:
                return std::nullopt;
        }
    }

    [[nodiscard]] constexpr int rawValue() const noexcept { return code_; }

    /// The name of the case: "notModified".
    [[nodiscard]] constexpr std::string_view description() const noexcept {
        switch (code_) {
            case ok:
                return "ok";
            case notModified:
                return "notModified";
            case notFound:
                return "notFound";
            case notAllowed:
                return "notAllowed";
            case gone:
                return "gone";
        }
        return {};
    }

    /// 100 to 199.
    [[nodiscard]] static constexpr bool isInformational(std::int64_t status) noexcept {
        return isWithin(100, 200, status);
    }

    /// 200 to 299.
    [[nodiscard]] static constexpr bool isSuccessful(std::int64_t status) noexcept {
        return isWithin(200, 300, status);
    }

    /// 300 to 399.
    [[nodiscard]] static constexpr bool isRedirection(std::int64_t status) noexcept {
        return isWithin(300, 400, status);
    }

    /// 400 to 499.
    [[nodiscard]] static constexpr bool isClientError(std::int64_t status) noexcept {
        return isWithin(400, 500, status);
    }

    /// 500 to 599.
    [[nodiscard]] static constexpr bool isServerError(std::int64_t status) noexcept {
        return isWithin(500, 600, status);
    }

    /// 400 to 599.
    [[nodiscard]] static constexpr bool isClientOrServerError(std::int64_t status) noexcept {
        return isWithin(400, 600, status);
    }

    /// Everything outside 400 to 599, numbers that are no status codes at all included.
    [[nodiscard]] static constexpr bool isNotError(std::int64_t status) noexcept {
        return !isClientOrServerError(status);
    }

    friend constexpr bool operator==(HTTPStatusCode, HTTPStatusCode) noexcept = default;

  private:
    static constexpr bool isWithin(std::int64_t first, std::int64_t end, std::int64_t status) noexcept {
        return first <= status && status < end;
    }

    Case code_;
};

}  // namespace corvane
