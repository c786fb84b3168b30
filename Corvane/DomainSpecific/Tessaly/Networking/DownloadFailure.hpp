#pragma once

#include <string>
#include <utility>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/FailureCases.hpp>

namespace corvane {

/// What the errors of the download road have in common: `Failure` derives from it and may have `More` cases. Two are
/// equal when case and payload are.
template <class Failure, class... More>
class DownloadFailure {
  public:
    [[nodiscard]] static Failure invalidResponse(std::string description) {
        return Failure(failureCases::InvalidResponse{std::move(description)});
    }

    [[nodiscard]] static Failure invalidUrl() { return Failure(failureCases::InvalidUrl{}); }

    [[nodiscard]] static Failure invalidJson() { return Failure(failureCases::InvalidJson{}); }

    [[nodiscard]] static Failure decryptionError() { return Failure(failureCases::DecryptionError{}); }

    [[nodiscard]] static Failure parsingError() { return Failure(failureCases::ParsingError{}); }

    [[nodiscard]] static Failure cancelled() { return Failure(failureCases::Cancelled{}); }

    [[nodiscard]] static Failure timeout() { return Failure(failureCases::Timeout{}); }

    [[nodiscard]] static Failure undefined() { return Failure(failureCases::Undefined{}); }

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

    friend bool operator==(const DownloadFailure&, const DownloadFailure&) = default;

  private:
    friend Failure;

    using Case = std::variant<failureCases::InvalidResponse, failureCases::InvalidUrl, failureCases::InvalidJson,
                              failureCases::DecryptionError, failureCases::ParsingError, failureCases::Cancelled,
                              failureCases::Timeout, failureCases::Undefined, More...>;

    explicit DownloadFailure(Case failure) noexcept : case_(std::move(failure)) {}

    template <class T>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<T>(case_);
    }

    Case case_;
};

}  // namespace corvane
