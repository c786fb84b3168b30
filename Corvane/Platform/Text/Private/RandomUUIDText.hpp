#pragma once

#include <string>

namespace corvane {

/// A fresh random UUID (RFC 9562, version 4) in its usual form, with capital digits.
[[nodiscard]] std::string randomUUIDText();

}  // namespace corvane
