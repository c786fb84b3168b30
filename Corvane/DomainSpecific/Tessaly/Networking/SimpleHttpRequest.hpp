#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPMethods.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>

namespace corvane {

/// What the simple client shall download: a GET, or a POST when there is a payload. Immutable and shared; may
/// be used from several threads.
///
///     auto request = SimpleHttpRequest::make({.url = URL::parse("https://example.org/fixtures")});
class CORVANE_EXPORT SimpleHttpRequest {
  public:
    struct Headers {
        static constexpr std::string_view IfModifiedSince = HTTPHeaders::ifModifiedSince;
    };

    struct Methods {
        static constexpr std::string_view GET = HTTPMethods::get;
        static constexpr std::string_view POST = HTTPMethods::post;
    };

    /// Seconds without a byte after which a request fails with `URLErrorDomain` -1001.
    static constexpr double timeoutInterval = 30.0;

    struct Fields {
        std::optional<std::string> ifModifiedSince = {};
        bool isEphemeral = false;
        std::optional<URL> url = {};
        std::string description = {};
        std::optional<Data> payload = {};
    };

    [[nodiscard]] static std::shared_ptr<const SimpleHttpRequest> make(Fields fields);

    /// Sent byte for byte as "If-Modified-Since": a validator that a response gave as its "Last-Modified"
    /// (RFC 9110, section 13.1.3).
    [[nodiscard]] const std::optional<std::string>& ifModifiedSince() const noexcept { return fields_.ifModifiedSince; }

    /// Whether the request goes over the session that keeps nothing from one request to the next.
    [[nodiscard]] bool isEphemeral() const noexcept { return fields_.isEphemeral; }

    /// A request without one fails with `SimpleHttpResponse::Errors::invalidUrl()`.
    [[nodiscard]] const std::optional<URL>& url() const noexcept { return fields_.url; }

    /// The name of the task, for logs and diagnostics; not sent.
    [[nodiscard]] const std::string& description() const noexcept { return fields_.description; }

    /// The body of a POST. An empty payload is a POST with an empty body.
    [[nodiscard]] const std::optional<Data>& payload() const noexcept { return fields_.payload; }

    /// The platform's form of this request, absent without a URL: past all caches, with no header fields but
    /// "If-Modified-Since".
    [[nodiscard]] std::optional<URLRequest> urlRequest() const;

  private:
    explicit SimpleHttpRequest(Fields fields) noexcept;

    Fields fields_;
};

}  // namespace corvane
