#pragma once

#include <expected>
#include <string_view>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane::detail {

/// Reads one JSON value. Behind `padded` there must be `Data::padding` bytes that may be read.
[[nodiscard]] std::expected<JSONValue, JSONErrorCode> readJSON(std::string_view padded);

}  // namespace corvane::detail
