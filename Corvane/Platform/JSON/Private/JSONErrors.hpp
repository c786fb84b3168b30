#pragma once

#include <string>

#include <simdjson.h>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane::detail {

/// The parser's errors in our terms.
[[nodiscard]] JSONErrorCode jsonErrorCode(simdjson::error_code error) noexcept;

/// What to tell a user about it: a sentence.
[[nodiscard]] std::string jsonErrorText(JSONErrorCode code);

}  // namespace corvane::detail
