#pragma once

#include <string>

namespace corvane {

/// One line of an HTTP message's header section (RFC 9110, 5): a name and a value, both as they stand in the
/// message.
struct HTTPHeaderField {
    std::string name;
    std::string value;

    friend bool operator==(const HTTPHeaderField&, const HTTPHeaderField&) = default;
};

}  // namespace corvane
