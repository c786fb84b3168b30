#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/JSON/JSONDictionary.hpp>

namespace corvane {

/// Reads JSON Web Tokens (RFC 7519).
struct CORVANE_EXPORT JWTUtils {
    /// Why a token has no payload that can be read. A JSON reader's error is none of these.
    class CORVANE_EXPORT DecodeError {
      public:
        /// The payload is not Base64.
        [[nodiscard]] static constexpr DecodeError badToken() noexcept { return DecodeError(Case::badToken); }

        /// The payload is JSON, but no dictionary.
        [[nodiscard]] static constexpr DecodeError other() noexcept { return DecodeError(Case::other); }

        [[nodiscard]] constexpr bool isBadToken() const noexcept { return case_ == Case::badToken; }

        [[nodiscard]] constexpr bool isOther() const noexcept { return case_ == Case::other; }

        [[nodiscard]] std::string description() const { return isBadToken() ? "badToken" : "other"; }

        [[nodiscard]] constexpr bool operator==(const DecodeError&) const noexcept = default;

      private:
        enum class Case : unsigned char { badToken, other };

        explicit constexpr DecodeError(Case c) noexcept : case_(c) {}

        Case case_;
    };

    /// The claims of a token: the JSON dictionary in its second part; absent when it has no second part.
    ///
    /// Header and signature are not looked at: whoever trusts a claim has to verify the token. The payload has to be in
    /// the standard Base64 alphabet, with or without padding; one in the URL-safe alphabet that holds a "-" or "_" is
    /// deliberately a bad token. Fails with a `DecodeError`, or with the `PlatformError` of `JSONSerialization`. Any
    /// thread.
    [[nodiscard]] static std::expected<std::optional<JSONDictionary>, AnyError> decodePayload(std::string_view jwt);
};

}  // namespace corvane
