#pragma once

#include <string>

#include <Corvane/DomainSpecific/Tessaly/Networking/DownloadFailure.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Why a client of the back end could not produce a result.
class CORVANE_EXPORT ClientAPIError : public DownloadFailure<ClientAPIError, failureCases::EmptyData> {
  public:
    using DownloadFailure::DownloadFailure;

    [[nodiscard]] static ClientAPIError emptyData() { return ClientAPIError(failureCases::EmptyData{}); }

    [[nodiscard]] bool isEmptyData() const noexcept { return is<failureCases::EmptyData>(); }

    /// What to tell a user. `invalidResponse` and `cancelled` deliberately say no more than "Undefined": the
    /// payload of the former is for code that looks at the case.
    [[nodiscard]] std::string errorDescription() const;

    /// What to tell a developer: the case's name, `invalidResponse(description: "...")` for the one with a
    /// payload.
    [[nodiscard]] std::string description() const;
};

}  // namespace corvane
