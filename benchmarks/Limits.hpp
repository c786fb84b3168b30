#pragma once

#include <linux/futex.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <new>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

/// The least code that does a job by hand, without what makes it a library. Benchmarks measure how near Corvane comes.
namespace limits {

/// Auto-reset event for one waiter; no system call unless it sleeps.
class Event {
  public:
    void set() {
        if (state_.exchange(1, std::memory_order_acq_rel) == 2) {
            ::syscall(SYS_futex, &state_, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
        }
    }

    void wait() {
        for (;;) {
            std::uint32_t value = 1;
            if (state_.compare_exchange_strong(value, 0, std::memory_order_acq_rel)) return;
            if (value == 0) state_.compare_exchange_strong(value, 2, std::memory_order_acq_rel);
            if (state_.load(std::memory_order_acquire) == 2) {
                ::syscall(SYS_futex, &state_, FUTEX_WAIT_PRIVATE, 2, nullptr, nullptr, 0);
            }
        }
    }

  private:
    /// 0 idle, 1 set, 2 waiting.
    std::atomic<std::uint32_t> state_ = 0;
};

/// Move-only callable of at most 72 bytes that never allocates.
class SmallFunction {
  public:
    SmallFunction() = default;

    template <class F>
        requires(!std::is_same_v<std::remove_cvref_t<F>, SmallFunction>)
    SmallFunction(F&& function) {  // NOLINT(google-explicit-constructor)
        using Target = std::decay_t<F>;
        static_assert(sizeof(Target) <= capacity && alignof(Target) <= alignof(void*));
        ::new (static_cast<void*>(storage_)) Target(std::forward<F>(function));
        call_ = [](void* target) { (*static_cast<Target*>(target))(); };
        if constexpr (!std::is_trivially_copyable_v<Target>) {
            move_ = [](void* to, void* from) {
                if (to != nullptr) ::new (to) Target(std::move(*static_cast<Target*>(from)));
                static_cast<Target*>(from)->~Target();
            };
        }
    }

    SmallFunction(SmallFunction&& other) noexcept { take(other); }

    SmallFunction& operator=(SmallFunction&& other) noexcept {
        reset();
        take(other);
        return *this;
    }

    ~SmallFunction() { reset(); }

    void operator()() { call_(storage_); }

  private:
    static constexpr std::size_t capacity = 72;

    void take(SmallFunction& other) noexcept {
        call_ = std::exchange(other.call_, nullptr);
        move_ = std::exchange(other.move_, nullptr);
        if (move_ != nullptr) {
            move_(storage_, other.storage_);
        } else {
            std::memcpy(storage_, other.storage_, capacity);
        }
    }

    void reset() {
        if (move_ != nullptr) move_(nullptr, storage_);
        call_ = nullptr;
        move_ = nullptr;
    }

    alignas(void*) std::byte storage_[capacity];
    void (*call_)(void*) = nullptr;
    void (*move_)(void* to, void* from) = nullptr;
};

enum class WakeBy { futex, eventDescriptor };

/// A thread that runs what it is given: a mutex and two vectors that change places.
template <WakeBy wakeBy>
class Loop {
  public:
    Loop() : thread_([this] { run(); }) {}

    ~Loop() {
        post([this] { stops_ = true; });
        thread_.join();
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    template <class F>
    void post(F&& function) {
        {
            const std::lock_guard lock(mutex_);
            const bool isFirst = queue_.empty();
            queue_.emplace_back(std::forward<F>(function));
            if (!isFirst) return;
        }
        if constexpr (wakeBy == WakeBy::futex) {
            event_.set();
        } else {
            const std::uint64_t one = 1;
            [[maybe_unused]] const auto written = ::write(descriptor_, &one, sizeof one);
        }
    }

  private:
    void run() {
        std::vector<SmallFunction> batch;
        while (!stops_) {
            if constexpr (wakeBy == WakeBy::futex) {
                event_.wait();
            } else {
                pollfd question{descriptor_, POLLIN, 0};
                ::poll(&question, 1, -1);
                std::uint64_t value = 0;
                [[maybe_unused]] const auto got = ::read(descriptor_, &value, sizeof value);
            }
            {
                const std::lock_guard lock(mutex_);
                batch.swap(queue_);
            }
            for (SmallFunction& function : batch)
                function();
            batch.clear();
        }
    }

    std::mutex mutex_;
    std::vector<SmallFunction> queue_;
    Event event_;
    int descriptor_ = wakeBy == WakeBy::eventDescriptor ? ::eventfd(0, EFD_NONBLOCK) : -1;
    std::atomic<bool> stops_ = false;
    std::thread thread_;
};

/// Threads that take batches from one deque behind one mutex.
class Pool {
  public:
    explicit Pool(unsigned threads) {
        for (unsigned number = 0; number < threads; ++number)
            threads_.emplace_back([this] { run(); });
    }

    ~Pool() {
        {
            const std::lock_guard lock(mutex_);
            stops_ = true;
        }
        condition_.notify_all();
        for (std::thread& thread : threads_)
            thread.join();
    }

    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;

    template <class F>
    void post(F&& function) {
        bool wakes = false;
        {
            const std::lock_guard lock(mutex_);
            queue_.emplace_back(std::forward<F>(function));
            wakes = idle_ > 0;
        }
        if (wakes) condition_.notify_one();
    }

  private:
    void run() {
        std::vector<SmallFunction> batch;
        std::unique_lock lock(mutex_);
        for (;;) {
            while (queue_.empty() && !stops_) {
                ++idle_;
                condition_.wait(lock);
                --idle_;
            }
            if (queue_.empty()) return;
            const std::size_t count = std::clamp<std::size_t>(queue_.size() / 2, 1, 64);
            for (std::size_t index = 0; index < count; ++index) {
                batch.push_back(std::move(queue_.front()));
                queue_.pop_front();
            }
            lock.unlock();
            for (SmallFunction& function : batch)
                function();
            batch.clear();
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable condition_;
    std::deque<SmallFunction> queue_;
    int idle_ = 0;
    bool stops_ = false;
    std::vector<std::thread> threads_;
};

/// One function at a time on a `Pool`.
class Strand {
  public:
    explicit Strand(Pool& pool) : pool_(pool) {}

    template <class F>
    void post(F&& function) {
        {
            const std::lock_guard lock(mutex_);
            queue_.emplace_back(std::forward<F>(function));
            if (isRunning_) return;
            isRunning_ = true;
        }
        pool_.post([this] { drain(); });
    }

  private:
    void drain() {
        std::vector<SmallFunction> batch;
        for (;;) {
            {
                const std::lock_guard lock(mutex_);
                if (queue_.empty()) {
                    isRunning_ = false;
                    return;
                }
                batch.swap(queue_);
            }
            for (SmallFunction& function : batch)
                function();
            batch.clear();
        }
    }

    Pool& pool_;
    std::mutex mutex_;
    std::vector<SmallFunction> queue_;
    bool isRunning_ = false;
};

inline std::uint64_t nanoseconds() {
    const auto span = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(span).count());
}

inline double percentile(std::vector<double>& values, double part) {
    if (values.empty()) return 0;
    const auto index = std::min(values.size() - 1, static_cast<std::size_t>(part * static_cast<double>(values.size())));
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(index), values.end());
    return values[index];
}

}  // namespace limits
