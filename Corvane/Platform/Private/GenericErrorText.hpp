#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// What a user is told of an error that has no text of its own.
[[nodiscard]] std::string genericErrorText(std::string_view domain, std::int64_t code);

}  // namespace corvane
