#pragma once

#include <string>
#include <utility>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/ClientAPIError.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Networking/API/FetchResultMetadata.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/JSON/DecodingError.hpp>

namespace corvane {

/// Why an `APIRepository` has no model to give, with the metadata of the attempt. An `ErrorType`.
class CORVANE_EXPORT APIRepositoryError {
  public:
    [[nodiscard]] static APIRepositoryError apiDecoding(DecodingError error, const FetchResultMetadata& metadata) {
        return {std::move(error), metadata};
    }

    [[nodiscard]] static APIRepositoryError apiNetworking(CommonAPIError error, const FetchResultMetadata& metadata) {
        return {std::move(error), metadata};
    }

    [[nodiscard]] static APIRepositoryError apiClient(ClientAPIError error, const FetchResultMetadata& metadata) {
        return {std::move(error), metadata};
    }

    [[nodiscard]] static APIRepositoryError generic(const AnyError& error, const FetchResultMetadata& metadata) {
        return {error, metadata};
    }

    /// The case that the type of `error` says. A body that a `CommonAPI` cannot decode is `apiNetworking`: its error is
    /// a `CommonAPIError`, whatever is in there.
    [[nodiscard]] static APIRepositoryError from(const AnyError& error, const FetchResultMetadata& metadata);

    [[nodiscard]] bool isAPIDecoding() const noexcept { return underlying<DecodingError>() != nullptr; }

    [[nodiscard]] bool isAPINetworking() const noexcept { return underlying<CommonAPIError>() != nullptr; }

    [[nodiscard]] bool isAPIClient() const noexcept { return underlying<ClientAPIError>() != nullptr; }

    [[nodiscard]] bool isGeneric() const noexcept { return underlying<AnyError>() != nullptr; }

    /// The error behind the case: a `DecodingError`, `CommonAPIError`, `ClientAPIError` or, of `generic`, an
    /// `AnyError`; null when the case has one of another type.
    template <class Error>
    [[nodiscard]] const Error* underlying() const noexcept {
        return std::get_if<Error>(&error_);
    }

    [[nodiscard]] const FetchResultMetadata& metadata() const noexcept { return metadata_; }

    /// What to tell a user: what the error behind tells, of a decoding error its description.
    [[nodiscard]] std::string errorDescription() const;

    /// What to tell a developer: the case's name with the error behind and the metadata in parentheses.
    [[nodiscard]] std::string description() const;

    /// Errors of `generic` are equal when domain and code are.
    friend CORVANE_EXPORT bool operator==(const APIRepositoryError& a, const APIRepositoryError& b);

  private:
    using Underlying = std::variant<DecodingError, CommonAPIError, ClientAPIError, AnyError>;

    APIRepositoryError(Underlying error, const FetchResultMetadata& metadata) noexcept
        : error_(std::move(error)), metadata_(metadata) {}

    Underlying error_;
    FetchResultMetadata metadata_;
};

}  // namespace corvane
