#pragma once

#include <string>
#include <utility>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/ClientAPIError.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/JSON/DecodingError.hpp>

namespace corvane {

/// What this layer tells of a decoding error: the text of its context, and nothing besides.
[[nodiscard]] inline const std::string& debugDescription(const DecodingError& error) noexcept {
    return error.context().debugDescription;
}

/// Why a typed API has no model to give. An `ErrorType`, so it goes into an `AnyError`.
///
///     if (const auto* fault = error.as<CommonAPIError::ClientFault>(); fault && fault->code == 410) forgetFixture();
class CORVANE_EXPORT CommonAPIError {
  public:
    /// The server's answer says that the request is at fault (RFC 9110, 15.5).
    struct ClientFault {
        /// The status, 400 to 499.
        int code;

        friend bool operator==(const ClientFault&, const ClientFault&) = default;
    };

    /// The server's answer says that the server is at fault (RFC 9110, 15.6).
    struct ServerFault {
        /// The status, 500 to 599.
        int code;

        friend bool operator==(const ServerFault&, const ServerFault&) = default;
    };

    /// The answer cannot be used: `emptyData` when "not modified" meets an empty cache.
    struct FromClient {
        ClientAPIError error;

        friend bool operator==(const FromClient&, const FromClient&) = default;
    };

    /// The body is no model.
    struct FromDecoding {
        DecodingError error;

        friend bool operator==(const FromDecoding&, const FromDecoding&) = default;
    };

    /// The transfer failed; cancelling is a failure too. Two are equal when domain and code of the error are.
    struct FromURLSession {
        AnyError error;

        friend bool operator==(const FromURLSession& a, const FromURLSession& b) {
            return a.error.code() == b.error.code() && a.error.domain() == b.error.domain();
        }
    };

    [[nodiscard]] static CommonAPIError clientFault(int code) { return CommonAPIError(ClientFault{code}); }

    [[nodiscard]] static CommonAPIError serverFault(int code) { return CommonAPIError(ServerFault{code}); }

    [[nodiscard]] static CommonAPIError clientAPIError(ClientAPIError error) {
        return CommonAPIError(FromClient{std::move(error)});
    }

    [[nodiscard]] static CommonAPIError decodingError(DecodingError error) {
        return CommonAPIError(FromDecoding{std::move(error)});
    }

    [[nodiscard]] static CommonAPIError urlSessionError(const AnyError& error) {
        return CommonAPIError(FromURLSession{error});
    }

    /// The API has no URL.
    [[nodiscard]] static CommonAPIError invalidURL() { return CommonAPIError(InvalidURL{}); }

    /// What came is no HTTP response.
    [[nodiscard]] static CommonAPIError invalidResponse() { return CommonAPIError(InvalidResponse{}); }

    /// The server answered 304.
    [[nodiscard]] static CommonAPIError notModified() { return CommonAPIError(NotModified{}); }

    /// The server answered with a redirect that was not to be followed.
    [[nodiscard]] static CommonAPIError redirection() { return CommonAPIError(Redirection{}); }

    [[nodiscard]] bool isClientFault() const noexcept { return is<ClientFault>(); }

    [[nodiscard]] bool isServerFault() const noexcept { return is<ServerFault>(); }

    [[nodiscard]] bool isClientAPIError() const noexcept { return is<FromClient>(); }

    [[nodiscard]] bool isDecodingError() const noexcept { return is<FromDecoding>(); }

    [[nodiscard]] bool isURLSessionError() const noexcept { return is<FromURLSession>(); }

    [[nodiscard]] bool isInvalidURL() const noexcept { return is<InvalidURL>(); }

    [[nodiscard]] bool isInvalidResponse() const noexcept { return is<InvalidResponse>(); }

    [[nodiscard]] bool isNotModified() const noexcept { return is<NotModified>(); }

    [[nodiscard]] bool isRedirection() const noexcept { return is<Redirection>(); }

    /// The payload of the case, null when it is another.
    template <class Case>
    [[nodiscard]] const Case* as() const noexcept {
        return std::get_if<Case>(&case_);
    }

    /// What to tell a user, with what a developer wants to know behind a colon: "Client fault (404)".
    [[nodiscard]] std::string errorDescription() const;

    /// What to tell a developer: the case's name, with its payload in parentheses: "clientFault(404)".
    [[nodiscard]] std::string description() const;

    friend bool operator==(const CommonAPIError&, const CommonAPIError&) = default;

  private:
    struct InvalidURL {
        friend bool operator==(InvalidURL, InvalidURL) = default;
    };

    struct InvalidResponse {
        friend bool operator==(InvalidResponse, InvalidResponse) = default;
    };

    struct NotModified {
        friend bool operator==(NotModified, NotModified) = default;
    };

    struct Redirection {
        friend bool operator==(Redirection, Redirection) = default;
    };

    using Cases = std::variant<ClientFault, ServerFault, FromClient, FromDecoding, FromURLSession, InvalidURL,
                               InvalidResponse, NotModified, Redirection>;

    explicit CommonAPIError(Cases failure) noexcept : case_(std::move(failure)) {}

    template <class Case>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<Case>(case_);
    }

    Cases case_;
};

}  // namespace corvane
