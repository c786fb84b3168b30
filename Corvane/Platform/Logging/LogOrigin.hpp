#pragma once

#include <cstdint>
#include <source_location>

namespace corvane {

/// The place in the code that a log entry speaks of. The texts are not copied: they are the compiler's, or literals.
struct LogOrigin {
    const char* file = "";
    const char* function = "";
    /// 0 when the place is not known.
    std::uint64_t line = 0;

    constexpr LogOrigin() noexcept = default;

    constexpr LogOrigin(const char* inFile, const char* inFunction, std::uint64_t atLine) noexcept
        : file(inFile), function(inFunction), line(atLine) {}

    constexpr LogOrigin(std::source_location where) noexcept  // NOLINT(google-explicit-constructor)
        : LogOrigin(where.file_name(), where.function_name(), where.line()) {}
};

}  // namespace corvane
