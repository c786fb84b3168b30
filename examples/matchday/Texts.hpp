#pragma once

#include <cstddef>
#include <string>

namespace matchday {

/// "1.9 KiB"
[[nodiscard]] std::string sizeText(std::size_t bytes);

/// "2.1 ms"
[[nodiscard]] std::string durationText(double milliseconds);

/// "404 Not Found", "503 (server error)"
[[nodiscard]] std::string statusText(int status);

}  // namespace matchday
