#include <pthread.h>
#include <signal.h>

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/PoolSupervisor.hpp>
#include <Corvane/Platform/Dispatch/Private/WorkerPool.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

namespace {

constexpr std::chrono::milliseconds lookInterval(2);

/// Keeps signals that the kernel may deliver to any thread off the threads started meanwhile.
class SignalsBlocked {
  public:
    SignalsBlocked() noexcept {
        sigset_t blocked;
        ::sigfillset(&blocked);
        // What a thread brings upon itself, and what profilers send.
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS, SIGPROF}) {
            ::sigdelset(&blocked, signal);
        }
        ::pthread_sigmask(SIG_BLOCK, &blocked, &before_);
    }

    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t before_{};
};

}  // namespace

PoolSupervisor& PoolSupervisor::shared() {
    static auto* const supervisor = new PoolSupervisor;
    return *supervisor;
}

PoolSupervisor::PoolSupervisor() {
    if (!startThread([this] { run(); })) fatalError("The system has no thread left for the dispatch engine");
}

bool PoolSupervisor::startThread(std::function<void()> body) noexcept {
    const SignalsBlocked blocked;
    try {
        std::thread(std::move(body)).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void PoolSupervisor::add(WorkerPool& pool) {
    const std::lock_guard lock(mutex_);
    pools_.push_back(&pool);
}

void PoolSupervisor::requestThread(std::function<void()> body) {
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back(std::move(body));
    }
    attend();
}

void PoolSupervisor::run() noexcept {
    ::pthread_setname_np(::pthread_self(), "corvane.super");
    using RealClock = std::chrono::steady_clock;
    RealClock::time_point nextLook = RealClock::now();
    bool isWaiting = false;
    for (;;) {
        if (isWaiting) {
            wakeWord_.waitFor(nextLook - RealClock::now());
        } else {
            wakeWord_.wait();
        }

        std::vector<WorkerPool*> pools;
        std::vector<std::function<void()>> requests;
        {
            const std::lock_guard lock(mutex_);
            pools = pools_;
            requests.swap(requests_);
        }
        for (std::function<void()>& request : requests) {
            if (!startThread(std::move(request))) fatalError("The system has no thread left for the dispatch engine");
        }
        const bool isTimeToLook = !isWaiting || RealClock::now() >= nextLook;
        if (isTimeToLook) {
            isWaiting = false;
            nextLook = RealClock::now() + lookInterval;
            for (WorkerPool* const pool : pools)
                isWaiting |= pool->supervise();
        }
        for (WorkerPool* const pool : pools)
            isWaiting |= !pool->startWorkers();
    }
}

}  // namespace corvane
