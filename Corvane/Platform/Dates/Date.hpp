#pragma once

#include <chrono>

namespace corvane {

/// An instant on the wall clock: seconds since 1970-01-01T00:00:00Z, with a fraction.
using Date = std::chrono::sys_time<std::chrono::duration<double>>;

}  // namespace corvane
