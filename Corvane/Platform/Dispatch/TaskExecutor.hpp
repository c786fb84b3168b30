#pragma once

#include <memory>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>

namespace corvane {

/// Where a task runs: the main queue (the main thread), a global queue (the shared pool of its class), or a serial
/// queue, whose tasks run one at a time between two suspensions. Holds its queue. Two are equal when their queue is
/// the same.
class CORVANE_EXPORT TaskExecutor {
  public:
    /// No choice: the shared pool, as whoever asks for it sees fit.
    TaskExecutor() noexcept = default;

    TaskExecutor(DispatchQueue& queue) noexcept;  // NOLINT(google-explicit-constructor)

    TaskExecutor(std::shared_ptr<DispatchQueue> queue) noexcept  // NOLINT(google-explicit-constructor)
        : queue_(std::move(queue)) {}

    /// Whether a queue was chosen.
    explicit operator bool() const noexcept { return queue_ != nullptr; }

    /// The chosen queue.
    [[nodiscard]] DispatchQueue& queue() const noexcept { return *queue_; }

    friend bool operator==(const TaskExecutor& a, const TaskExecutor& b) noexcept { return a.queue_ == b.queue_; }

  private:
    std::shared_ptr<DispatchQueue> queue_;
};

}  // namespace corvane
