#pragma once

#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// The error of a system call that left `code` in `errno`: domain "POSIXErrorDomain", with the system's text.
[[nodiscard]] PlatformError posixError(int code);

/// The same for what `errno` says now.
[[nodiscard]] PlatformError lastPOSIXError();

}  // namespace corvane
