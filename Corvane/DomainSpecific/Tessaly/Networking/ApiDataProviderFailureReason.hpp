#pragma once

#include <string>
#include <utility>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/FailureCases.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Why a download through the data provider failed. Two are equal when case and payload are.
///
/// `decryptionError` is for callers to report: nothing in the library decrypts.
class CORVANE_EXPORT ApiDataProviderFailureReason {
  public:
    [[nodiscard]] static ApiDataProviderFailureReason invalidResponse(std::string description) {
        return ApiDataProviderFailureReason(failureCases::InvalidResponse{std::move(description)});
    }

    [[nodiscard]] static ApiDataProviderFailureReason invalidUrl() {
        return ApiDataProviderFailureReason(failureCases::InvalidUrl{});
    }

    [[nodiscard]] static ApiDataProviderFailureReason invalidJson() {
        return ApiDataProviderFailureReason(failureCases::InvalidJson{});
    }

    [[nodiscard]] static ApiDataProviderFailureReason decryptionError() {
        return ApiDataProviderFailureReason(failureCases::DecryptionError{});
    }

    [[nodiscard]] static ApiDataProviderFailureReason parsingError() {
        return ApiDataProviderFailureReason(failureCases::ParsingError{});
    }

    [[nodiscard]] static ApiDataProviderFailureReason cancelled() {
        return ApiDataProviderFailureReason(failureCases::Cancelled{});
    }

    [[nodiscard]] static ApiDataProviderFailureReason timeout() {
        return ApiDataProviderFailureReason(failureCases::Timeout{});
    }

    [[nodiscard]] static ApiDataProviderFailureReason undefined() {
        return ApiDataProviderFailureReason(failureCases::Undefined{});
    }

    [[nodiscard]] bool isInvalidResponse() const noexcept { return asInvalidResponse() != nullptr; }

    [[nodiscard]] bool isInvalidUrl() const noexcept { return is<failureCases::InvalidUrl>(); }

    [[nodiscard]] bool isInvalidJson() const noexcept { return is<failureCases::InvalidJson>(); }

    [[nodiscard]] bool isDecryptionError() const noexcept { return is<failureCases::DecryptionError>(); }

    [[nodiscard]] bool isParsingError() const noexcept { return is<failureCases::ParsingError>(); }

    [[nodiscard]] bool isCancelled() const noexcept { return is<failureCases::Cancelled>(); }

    [[nodiscard]] bool isTimeout() const noexcept { return is<failureCases::Timeout>(); }

    [[nodiscard]] bool isUndefined() const noexcept { return is<failureCases::Undefined>(); }

    /// The payload of `invalidResponse`, null for every other case.
    [[nodiscard]] const failureCases::InvalidResponse* asInvalidResponse() const noexcept {
        return std::get_if<failureCases::InvalidResponse>(&case_);
    }

    /// What to tell a user. The texts deliberately differ from those of `ClientAPIError` in capitals, and
    /// `invalidResponse` shows its payload.
    [[nodiscard]] std::string errorDescription() const;

    /// What to tell a developer: the case's name, `invalidResponse(description: "...")` for the one with a
    /// payload.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const ApiDataProviderFailureReason&, const ApiDataProviderFailureReason&) = default;

  private:
    using Case = std::variant<failureCases::InvalidResponse, failureCases::InvalidUrl, failureCases::InvalidJson,
                              failureCases::DecryptionError, failureCases::ParsingError, failureCases::Cancelled,
                              failureCases::Timeout, failureCases::Undefined>;

    explicit ApiDataProviderFailureReason(Case failure) noexcept : case_(std::move(failure)) {}

    template <class T>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<T>(case_);
    }

    Case case_;
};

}  // namespace corvane
