#pragma once

#include <memory>

#include <Corvane/Export.hpp>

namespace corvane {

/// Keeps an observer registered with a `NotificationCenter` until `remove` or its own end. It may outlive the center.
///
/// Once it is removed, no call of the block starts on the thread that removed it; another thread may be in the midst
/// of a call, or about to begin one it had already decided on. The block is destroyed with the last of these.
/// Removing it inside its own block is fine.
class CORVANE_EXPORT NotificationObservation {
  public:
    NotificationObservation() noexcept = default;
    NotificationObservation(NotificationObservation&&) noexcept = default;
    NotificationObservation& operator=(NotificationObservation&& other) noexcept;
    NotificationObservation(const NotificationObservation&) = delete;
    NotificationObservation& operator=(const NotificationObservation&) = delete;

    ~NotificationObservation() { remove(); }

    /// Stops observing; harmless when it has stopped already.
    void remove() noexcept;

    /// Whether it still observes.
    [[nodiscard]] explicit operator bool() const noexcept { return observer_ != nullptr; }

    class Observer;

  private:
    friend class NotificationCenter;

    explicit NotificationObservation(std::shared_ptr<Observer> observer) noexcept;

    std::shared_ptr<Observer> observer_;
};

}  // namespace corvane
