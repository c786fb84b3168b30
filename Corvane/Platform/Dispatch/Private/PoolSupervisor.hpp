#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include <Corvane/Platform/Dispatch/Private/WakeWord.hpp>

namespace corvane {

class WorkerPool;

/// The thread that starts the engine's threads and keeps the worker pools going when blocks block.
///
/// It is made with the first pool, so that it carries the process's nice value, which the threads that it starts
/// inherit: a worker of a low class could not give its own back. It sleeps until a pool asks for attention and
/// then looks every two milliseconds of real time for as long as blocks wait. This is the one wait that is not on
/// the clock in force: whether a worker is stuck has nothing to do with what time a test has made it.
class PoolSupervisor {
  public:
    /// Made on first use, never destroyed.
    static PoolSupervisor& shared();

    /// Puts a pool under supervision for good.
    void add(WorkerPool& pool);

    /// Asks for a look at the pools now. Any thread; costs one atomic exchange while the supervisor is awake.
    void attend() noexcept { wakeWord_.set(); }

    /// Starts a detached thread with all signals that mean the application blocked; false when the system has no
    /// more threads. Supervisor's thread only.
    static bool startThread(std::function<void()> body) noexcept;

    /// Starts a thread from the supervisor's thread.
    void requestThread(std::function<void()> body);

  private:
    PoolSupervisor();

    [[noreturn]] void run() noexcept;

    WakeWord wakeWord_;
    std::mutex mutex_;
    std::vector<WorkerPool*> pools_;
    std::vector<std::function<void()>> requests_;
};

}  // namespace corvane
