#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>

namespace corvane::http {

/// Gathers a response's head from its lines as they arrive. Interim heads (1xx) are forgotten when the next
/// status line comes, trailers are not gathered.
class ResponseHead {
  public:
    /// The most that all the header lines of one exchange may come to, interim heads and trailers included.
    static constexpr std::size_t maximumBytes = std::size_t{256} << 10U;

    /// Starts anew, for the next exchange.
    void reset() noexcept;

    /// Takes the next line, with or without its line end; false when there have been too many bytes. Lines
    /// that are no fields are passed over; a folded line belongs to the value before it (RFC 9112, 5.2).
    bool append(std::string_view line);

    /// Whether the blank line after the fields has come.
    [[nodiscard]] bool isComplete() const noexcept { return isComplete_; }

    /// Whether this is the head of the response proper.
    [[nodiscard]] bool isFinal() const noexcept { return isComplete_ && statusCode_ >= 200; }

    /// 0 when there was no readable status line.
    [[nodiscard]] int statusCode() const noexcept { return statusCode_; }

    [[nodiscard]] bool isHTTP2() const noexcept { return version_ == "HTTP/2"; }

    /// The first line of the field, if any; letter case does not matter.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view field) const noexcept;

    /// The length that Content-Length states; absent when the content is encoded and its length thus unknown.
    [[nodiscard]] std::optional<std::size_t> contentLength() const noexcept;

    /// Whether two Content-Length lines differ: nobody can say then where the response ends (RFC 9112, 6.3).
    [[nodiscard]] bool hasConflictingLengths() const noexcept;

    /// The head as a response from `url`. The fields are moved out: call it once.
    [[nodiscard]] std::shared_ptr<const HTTPURLResponse> makeResponse(const URL& url);

  private:
    void readStatusLine(std::string_view line);
    void readField(std::string_view line);

    std::size_t bytes_ = 0;
    bool isComplete_ = false;
    int statusCode_ = 0;
    std::string version_;
    std::vector<HTTPHeaderField> fields_;
};

}  // namespace corvane::http
