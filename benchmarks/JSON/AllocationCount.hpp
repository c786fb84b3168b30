#pragma once

#include <cstdint>

/// How often the program has allocated by `operator new`.
[[nodiscard]] std::uint64_t allocationCount() noexcept;
