#pragma once

#include <cstdint>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// Why an operation on a `NetworkPath` failed: the last error number, as it was right after the failure.
struct CORVANE_EXPORT NetworkPathError {
    /// A number of the system (errno), or what `testing::ScriptedPath` was told to say.
    std::int32_t code = 0;

    /// The system's text for the number.
    [[nodiscard]] std::string description() const;

    friend bool operator==(NetworkPathError, NetworkPathError) noexcept = default;
};

}  // namespace corvane
