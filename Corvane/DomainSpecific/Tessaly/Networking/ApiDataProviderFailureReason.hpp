#pragma once

#include <string>

#include <Corvane/DomainSpecific/Tessaly/Networking/DownloadFailure.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Why a download through the data provider failed.
///
/// `decryptionError` is for callers to report: nothing in the library decrypts.
class CORVANE_EXPORT ApiDataProviderFailureReason : public DownloadFailure<ApiDataProviderFailureReason> {
  public:
    using DownloadFailure::DownloadFailure;

    /// What to tell a user. The texts deliberately differ from those of `ClientAPIError` in capitals, and
    /// `invalidResponse` shows its payload.
    [[nodiscard]] std::string errorDescription() const;

    /// What to tell a developer: the case's name, `invalidResponse(description: "...")` for the one with a
    /// payload.
    [[nodiscard]] std::string description() const;
};

}  // namespace corvane
