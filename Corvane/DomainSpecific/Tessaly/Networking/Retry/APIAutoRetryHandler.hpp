#pragma once

#include <cstdint>
#include <memory>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/APIAutoRetry.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Allows so many retries, over its whole life, each after some seconds of waiting.
///
///     auto autoRetry = APIAutoRetryHandler::make(3, 2.0);
///     const TYAutoRetryResult decision = co_await autoRetry->start();
///
/// All operations may be called on any thread.
class CORVANE_EXPORT APIAutoRetryHandler final : public APIAutoRetry,
                                                 public std::enable_shared_from_this<APIAutoRetryHandler> {
  public:
    /// `retryTimeout` in seconds is what `Task<>::sleep` takes.
    [[nodiscard]] static std::shared_ptr<APIAutoRetryHandler> make(std::int64_t retryCount, double retryTimeout);

    [[nodiscard]] std::int64_t retryCount() const noexcept { return retryCount_; }

    [[nodiscard]] double retryTimeout() const noexcept { return retryTimeout_; }

    /// How many retries have been allowed so far.
    [[nodiscard]] std::int64_t currentCount() const { return currentCount_.wrappedValue(); }

    /// `stop`, at once, when all retries have been allowed; otherwise waits and allows one. `stop`, too, when the task
    /// is cancelled meanwhile, which uses up no retry, or when others that waited at the same time took the last one.
    [[nodiscard]] Task<TYAutoRetryResult> start() override;

    /// Deliberately does nothing: retries that were used up do not come back.
    void clear() override {}

  private:
    APIAutoRetryHandler(std::int64_t retryCount, double retryTimeout) noexcept;

    static Task<TYAutoRetryResult> waitAndDecide(std::shared_ptr<APIAutoRetryHandler> self);

    const std::int64_t retryCount_;
    const double retryTimeout_;
    Atomic<std::int64_t> currentCount_{0};
};

}  // namespace corvane
