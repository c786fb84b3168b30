#pragma once

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/TYAutoRetryResult.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

namespace corvane {

/// Decides whether, and waits until, a request that a server has failed is sent again. Shared; operations may be
/// called from any thread.
class CORVANE_EXPORT APIAutoRetry {
  public:
    virtual ~APIAutoRetry();
    APIAutoRetry(const APIAutoRetry&) = delete;
    APIAutoRetry& operator=(const APIAutoRetry&) = delete;

    /// Waits as long as it takes, then says what to do. Holds the object until it has ended.
    [[nodiscard]] virtual Task<TYAutoRetryResult> start() = 0;

    /// Told when a request is given up after `stop`.
    virtual void clear() = 0;

  protected:
    APIAutoRetry() = default;
};

}  // namespace corvane
