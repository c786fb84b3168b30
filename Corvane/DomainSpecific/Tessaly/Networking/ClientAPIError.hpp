#pragma once

#include <string>
#include <utility>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/FailureCases.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Why a client of the back end could not produce a result. Two are equal when case and payload are.
class CORVANE_EXPORT ClientAPIError {
  public:
    [[nodiscard]] static ClientAPIError invalidResponse(std::string description) {
        return ClientAPIError(failureCases::InvalidResponse{std::move(description)});
    }

    [[nodiscard]] static ClientAPIError invalidUrl() { return ClientAPIError(failureCases::InvalidUrl{}); }

    [[nodiscard]] static ClientAPIError invalidJson() { return ClientAPIError(failureCases::InvalidJson{}); }

    [[nodiscard]] static ClientAPIError decryptionError() { return ClientAPIError(failureCases::DecryptionError{}); }

    [[nodiscard]] static ClientAPIError parsingError() { return ClientAPIError(failureCases::ParsingError{}); }

    [[nodiscard]] static ClientAPIError cancelled() { return ClientAPIError(failureCases::Cancelled{}); }

    [[nodiscard]] static ClientAPIError timeout() { return ClientAPIError(failureCases::Timeout{}); }

    [[nodiscard]] static ClientAPIError undefined() { return ClientAPIError(failureCases::Undefined{}); }

    [[nodiscard]] static ClientAPIError emptyData() { return ClientAPIError(failureCases::EmptyData{}); }

    [[nodiscard]] bool isInvalidResponse() const noexcept { return asInvalidResponse() != nullptr; }

    [[nodiscard]] bool isInvalidUrl() const noexcept { return is<failureCases::InvalidUrl>(); }

    [[nodiscard]] bool isInvalidJson() const noexcept { return is<failureCases::InvalidJson>(); }

    [[nodiscard]] bool isDecryptionError() const noexcept { return is<failureCases::DecryptionError>(); }

    [[nodiscard]] bool isParsingError() const noexcept { return is<failureCases::ParsingError>(); }

    [[nodiscard]] bool isCancelled() const noexcept { return is<failureCases::Cancelled>(); }

    [[nodiscard]] bool isTimeout() const noexcept { return is<failureCases::Timeout>(); }

    [[nodiscard]] bool isUndefined() const noexcept { return is<failureCases::Undefined>(); }

    [[nodiscard]] bool isEmptyData() const noexcept { return is<failureCases::EmptyData>(); }

    /// The payload of `invalidResponse`, null for every other case.
    [[nodiscard]] const failureCases::InvalidResponse* asInvalidResponse() const noexcept {
        return std::get_if<failureCases::InvalidResponse>(&case_);
    }

    /// What to tell a user. `invalidResponse` and `cancelled` deliberately say no more than "Undefined": the
    /// payload of the former is for code that looks at the case.
    [[nodiscard]] std::string errorDescription() const;

    /// What to tell a developer: the case's name, `invalidResponse(description: "...")` for the one with a
    /// payload.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const ClientAPIError&, const ClientAPIError&) = default;

  private:
    using Case = std::variant<failureCases::InvalidResponse, failureCases::InvalidUrl, failureCases::InvalidJson,
                              failureCases::DecryptionError, failureCases::ParsingError, failureCases::Cancelled,
                              failureCases::Timeout, failureCases::Undefined, failureCases::EmptyData>;

    explicit ClientAPIError(Case failure) noexcept : case_(std::move(failure)) {}

    template <class T>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<T>(case_);
    }

    Case case_;
};

}  // namespace corvane
