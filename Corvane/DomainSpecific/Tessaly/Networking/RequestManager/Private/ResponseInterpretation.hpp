#pragma once

#include <cstdint>
#include <optional>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiResponse.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/RequestManagerResult.hpp>

namespace corvane {

/// What the request manager makes of a response.
struct ResponseInterpretation {
    /// Absent for a cancelled load, of which nobody hears.
    std::optional<RequestManagerResult> result;
    /// What the tracker is told, if anything.
    std::optional<std::int64_t> reportedCode = std::nullopt;
};

/// Depends on nothing but its argument. Stops the process for JSON that is no object.
[[nodiscard]] ResponseInterpretation interpret(const ApiResponse& response);

}  // namespace corvane
