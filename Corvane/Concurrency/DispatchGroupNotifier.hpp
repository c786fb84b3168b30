#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane::detail {

/// The part of `DispatchGroupIdentifiable` that does not depend on its items: who is told, where, and the time-out.
class CORVANE_EXPORT DispatchGroupNotifier : public std::enable_shared_from_this<DispatchGroupNotifier> {
  public:
    DispatchGroupNotifier() = default;
    ~DispatchGroupNotifier();
    DispatchGroupNotifier(const DispatchGroupNotifier&) = delete;
    DispatchGroupNotifier& operator=(const DispatchGroupNotifier&) = delete;

    void setCallback(DispatchQueue& queue, std::function<void()> execute);
    void startTimer(double timeout);
    void stopTimer() noexcept;

    /// Queues a call of the callback there is by then, if this still exists.
    void notify();

    /// Drops callback and timer.
    void forget();

  private:
    using Callback = std::shared_ptr<const std::function<void()>>;

    Callback exchangeCallback(Callback callback) noexcept;
    [[nodiscard]] Callback callback() noexcept;

    std::shared_ptr<DispatchQueue> queue_;
    std::shared_ptr<Timer> timer_;
    /// The callback alone is read on another thread, that of the queue.
    UnfairLock lock_;
    Callback callback_;
};

}  // namespace corvane::detail
