#pragma once

#include <chrono>
#include <optional>

namespace corvane {

/// What a foreign loop polls in a run loop's place: one descriptor that is readable after `signal` and once the
/// time set has passed. `signal` may be called on any thread, the rest under a lock of the caller.
class RunLoopDescriptor {
  public:
    /// Stops the process when the system has no descriptors left.
    RunLoopDescriptor();
    ~RunLoopDescriptor();
    RunLoopDescriptor(const RunLoopDescriptor&) = delete;
    RunLoopDescriptor& operator=(const RunLoopDescriptor&) = delete;

    [[nodiscard]] int number() const noexcept { return epoll_; }

    void signal() const noexcept;

    /// Makes the descriptor unreadable, but for a time that has passed.
    void acknowledge() const noexcept;

    /// Readable after `timeout`, instead of after the time set before; never for absent.
    void setTimeout(std::optional<std::chrono::nanoseconds> timeout) const noexcept;

  private:
    int epoll_;
    int event_;
    int timer_;
};

}  // namespace corvane
