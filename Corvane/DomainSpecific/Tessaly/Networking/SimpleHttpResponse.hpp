#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Data.hpp>

namespace corvane {

class HTTPURLResponse;
class SimpleHttpRequest;

/// How a request of the simple client ended. A value: hand it on by moving or copying, bodies are shared.
///
/// A status of 400 and above is no `error` here; look at `statusCode()`.
class CORVANE_EXPORT SimpleHttpResponse {
  public:
    struct Headers {
        static constexpr std::string_view LastModified = HTTPHeaders::lastModified;
    };

    /// Errors that the simple client itself reports: platform errors, each made on first use and shared.
    struct CORVANE_EXPORT Errors {
        /// The request has no URL. Domain "Invalid URL", code 999.
        [[nodiscard]] static const AnyError& invalidUrl();
        /// The body is missing although the status is not 304. Domain "Received empty data", code 99999.
        [[nodiscard]] static const AnyError& emptyData();
    };

    /// Interprets the end of a transfer; depends on nothing but its arguments.
    /// \param request the request, null when it is not known
    /// \param data the body; one of zero bytes counts as absent
    /// \param urlResponse the response's head, null when there was none; ignored when `error` is given
    /// \param error why the transfer failed, passed on unchanged
    SimpleHttpResponse(const SimpleHttpRequest* request, std::optional<Data> data,
                       const std::shared_ptr<const HTTPURLResponse>& urlResponse, std::optional<AnyError> error);

    /// The response to a request that could not be sent.
    explicit SimpleHttpResponse(AnyError error) noexcept : error_(std::move(error)) {}

    /// The body as received, never transformed.
    [[nodiscard]] const std::optional<Data>& data() const noexcept { return data_; }

    /// The field that is spelled exactly "Last-Modified", byte for byte; fit to be sent as
    /// "If-Modified-Since".
    [[nodiscard]] const std::optional<std::string>& lastModified() const noexcept { return lastModified_; }

    /// Whether the status is 304.
    [[nodiscard]] bool isNotModified() const noexcept { return isNotModified_; }

    [[nodiscard]] const std::optional<AnyError>& error() const noexcept { return error_; }

    /// Absent when the transfer failed.
    [[nodiscard]] const std::optional<int>& statusCode() const noexcept { return statusCode_; }

    void setStatusCode(std::optional<int> statusCode) noexcept { statusCode_ = statusCode; }

    /// The URL that was asked for, not the one that redirects led to; absent when the transfer failed.
    [[nodiscard]] const std::optional<std::string>& urlString() const noexcept { return urlString_; }

    void setUrlString(std::optional<std::string> urlString) noexcept { urlString_ = std::move(urlString); }

  private:
    std::optional<Data> data_;
    std::optional<std::string> lastModified_;
    bool isNotModified_ = false;
    std::optional<AnyError> error_;
    std::optional<int> statusCode_;
    std::optional<std::string> urlString_;
};

}  // namespace corvane
