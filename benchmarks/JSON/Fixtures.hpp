#pragma once

#include <cstdint>

#include <Corvane/Platform/Data.hpp>

/// A matchday as the back end sends it: nested objects, odds, escapes, UTF-8. Of `size` bytes and a few.
[[nodiscard]] const corvane::Data& document(std::int64_t size);
