#pragma once

#include <optional>
#include <string>

#include <Corvane/Platform/Data.hpp>

namespace corvane {

/// What a remote answered.
struct URLSessionAPIResponse {
    /// The body; empty when there is none.
    Data data;

    /// "Last-Modified" (RFC 9110, 8.8.2), byte for byte: it goes back to the server as it came.
    std::optional<std::string> lastModified;

    /// "Date" (RFC 9110, 6.6.1), byte for byte.
    std::optional<std::string> timeStamp;

    friend bool operator==(const URLSessionAPIResponse&, const URLSessionAPIResponse&) = default;
};

}  // namespace corvane
