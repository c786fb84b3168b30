#pragma once

#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>

namespace corvane {

class DispatchQueue;

/// A link of the chain of queues that the calling thread's block runs on, innermost first. Lives on the stack for
/// as long as the block runs.
class QueueFrame {
  public:
    /// `waiter` is the chain of the thread that waits for this block, if one does.
    explicit QueueFrame(const DispatchQueue* queue, const QueueFrame* waiter = nullptr) noexcept
        : queue_(queue), outer_(innermost), waiter_(waiter) {
        innermost = this;
    }

    ~QueueFrame() { innermost = outer_; }

    QueueFrame(const QueueFrame&) = delete;
    QueueFrame& operator=(const QueueFrame&) = delete;

    /// The chain of the calling thread.
    [[nodiscard]] static const QueueFrame* current() noexcept { return innermost; }

    /// Whether `queue` is in the chain `frame`.
    [[nodiscard]] static bool contains(const QueueFrame* frame, const DispatchQueue* queue) noexcept {
        for (; frame != nullptr; frame = frame->outer_) {
            if (frame->queue_ == queue) return true;
        }
        return false;
    }

    /// Whether `queue` cannot go on before the block of `frame` ends: it is in the chain or in the one of a thread
    /// that waits for the block.
    [[nodiscard]] static bool isHeldUp(const QueueFrame* frame, const DispatchQueue* queue) noexcept {
        for (; frame != nullptr; frame = frame->outer_) {
            if (frame->queue_ == queue || isHeldUp(frame->waiter_, queue)) return true;
        }
        return false;
    }

  private:
    inline static constinit thread_local const QueueFrame* innermost = nullptr;

    const DispatchQueue* queue_;
    const QueueFrame* outer_;
    const QueueFrame* waiter_;
};

}  // namespace corvane
