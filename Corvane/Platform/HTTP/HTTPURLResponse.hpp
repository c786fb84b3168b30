#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/HTTP/HTTPHeaderField.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>

namespace corvane {

/// The head of an HTTP response. Immutable: it is handed about as `std::shared_ptr<const HTTPURLResponse>`
/// and may be read on any thread.
class CORVANE_EXPORT HTTPURLResponse {
  public:
    HTTPURLResponse(URL url, int statusCode, std::string httpVersion, std::vector<HTTPHeaderField> headerFields);

    /// Where the response came from: the request's URL, or the last one when redirects were followed.
    [[nodiscard]] const URL& url() const noexcept { return url_; }

    [[nodiscard]] int statusCode() const noexcept { return statusCode_; }

    /// "HTTP/1.0", "HTTP/1.1" or "HTTP/2".
    [[nodiscard]] const std::string& httpVersion() const noexcept { return httpVersion_; }

    /// The fields in the order received, values byte for byte (only the blanks around them are no part of
    /// them). Names of HTTP/1.x stay as received; HTTP/2 sends them in lower case, and they get their usual
    /// capitals here ("Last-Modified", "ETag"). They describe the message on the wire: the body handed over is
    /// decoded already although Content-Encoding and the encoded Content-Length stand here.
    [[nodiscard]] const std::vector<HTTPHeaderField>& headerFields() const noexcept { return headerFields_; }

    /// The value of the field spelled exactly so, letter case included. Repeated lines are joined with ", "
    /// (RFC 9110, 5.3), except Set-Cookie, of which the first is given.
    [[nodiscard]] std::optional<std::string> headerField(std::string_view exactName) const;

    /// The value of the field; letter case does not matter (RFC 9110, 5.1). Repeated lines as above.
    [[nodiscard]] std::optional<std::string> value(std::string_view field) const;

  private:
    URL url_;
    int statusCode_;
    std::string httpVersion_;
    std::vector<HTTPHeaderField> headerFields_;
};

}  // namespace corvane
