#pragma once

#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// The task that was to do something, or to wait, has been cancelled.
struct CORVANE_EXPORT CancellationError {
    [[nodiscard]] static std::string description() { return "CancellationError"; }

    friend bool operator==(CancellationError, CancellationError) = default;
};

}  // namespace corvane
