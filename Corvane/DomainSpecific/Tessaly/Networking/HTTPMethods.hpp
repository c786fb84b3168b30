#pragma once

#include <string_view>

namespace corvane {

/// The request methods that the back end understands (RFC 9110, section 9.3).
struct HTTPMethods {
    HTTPMethods() = delete;

    static constexpr std::string_view get = "GET";
    static constexpr std::string_view post = "POST";
    /// The underscore only keeps the name apart from the keyword.
    static constexpr std::string_view delete_ = "DELETE";
};

}  // namespace corvane
