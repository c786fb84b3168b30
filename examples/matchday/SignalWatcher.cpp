#include "SignalWatcher.hpp"

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <utility>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>

namespace matchday {

SignalWatcher::SignalWatcher(std::function<void(int)> onSignal) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGWINCH);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    thread_ = std::thread([this, signals, shared = std::make_shared<std::function<void(int)>>(std::move(onSignal))] {
        bool hasAsked = false;
        for (int signal = 0; sigwait(&signals, &signal) == 0 && !isEnding_.load();) {
            if (signal != SIGWINCH && std::exchange(hasAsked, true)) _exit(128 + signal);
            corvane::RunLoop::main().perform([shared, signal] { (*shared)(signal); });
        }
    });
}

SignalWatcher::~SignalWatcher() {
    isEnding_.store(true);
    // NOLINTNEXTLINE(bugprone-bad-signal-to-kill-thread): it waits for the signal, which ends nothing.
    pthread_kill(thread_.native_handle(), SIGTERM);
    thread_.join();
}

}  // namespace matchday
