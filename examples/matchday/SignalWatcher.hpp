#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace matchday {

/// Turns SIGINT, SIGTERM and SIGWINCH into calls on the main run loop. Made on the main thread before any other thread,
/// which then inherits the blocked signals; nothing ever runs inside a signal handler.
class SignalWatcher {
  public:
    /// `onSignal` is called on the main thread with the signal's number. A second SIGINT or SIGTERM ends the process
    /// at once, for users who do not want to wait.
    explicit SignalWatcher(std::function<void(int)> onSignal);
    ~SignalWatcher();

    SignalWatcher(const SignalWatcher&) = delete;
    SignalWatcher& operator=(const SignalWatcher&) = delete;

  private:
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

}  // namespace matchday
