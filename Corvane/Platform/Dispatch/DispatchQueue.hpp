#pragma once

#include <concepts>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>
#include <Corvane/Platform/Dispatch/Work.hpp>

namespace corvane {

/// A queue that runs blocks in the order given (main and serial queues) or side by side (global queues).
///
/// The main queue runs its blocks on the main thread, inside the main run loop. There is one global queue per
/// quality-of-service class: as many threads as there are processors, and more while blocks block, so that it keeps
/// making progress while up to 63 of its blocks are blocked. A serial queue runs one block at a time, on its target
/// (another serial queue, or the global queue of its class), and lives until its last owner has let go and its last
/// block has run. Queues have no shut-down: what was queued runs.
///
/// All operations may be called on any thread.
class CORVANE_EXPORT DispatchQueue : public std::enable_shared_from_this<DispatchQueue> {
  public:
    /// The queue of the main thread.
    [[nodiscard]] static DispatchQueue& main() noexcept;

    /// The global queue of a class; `unspecified` gives the one of `default_`.
    [[nodiscard]] static DispatchQueue& global(QoSClass qosClass = QoSClass::default_) noexcept;

    /// Makes a serial queue. Without a target it runs on the global queue of its class.
    [[nodiscard]] static std::shared_ptr<DispatchQueue> serial(std::string label, DispatchQoS qos = {},
                                                               std::shared_ptr<DispatchQueue> target = nullptr);

    virtual ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    [[nodiscard]] const std::string& label() const noexcept { return label_; }

    [[nodiscard]] DispatchQoS qos() const noexcept { return qos_; }

    /// Whether the calling block runs on this queue, directly or as the target of the queue it was given to.
    [[nodiscard]] bool isCurrent() const noexcept;

    /// Queues `work` and returns. A `qos` above the queue's own lifts the block to the workers of that class;
    /// one below it changes nothing. The main queue has one thread and ignores it.
    void async(Work work, DispatchQoS qos = {});

    /// Queues `work` once `seconds` have passed on the clock in force; at the next chance for zero or less. Blocks with
    /// equal deadlines are queued in the order given. The queue is held until then.
    void asyncAfter(double seconds, Work work, DispatchQoS qos = {});

    /// Runs `body` on this queue and waits for it; gives what it returns and throws what it throws. Called on the
    /// queue it waits for, it would wait for itself: the process is stopped with a message instead. Global queues
    /// run `body` on the calling thread. On a serial queue `body` is lifted to the class of a calling worker, or to
    /// `userInteractive` for the main thread, so that nobody waits for a thread of a lower class than its own.
    template <std::invocable Body>
    std::invoke_result_t<Body> sync(Body&& body) {
        using Result = std::invoke_result_t<Body>;
        std::exception_ptr failure;
        if constexpr (std::is_void_v<Result>) {
            auto guarded = [&] {
                try {
                    std::forward<Body>(body)();
                } catch (...) {
                    failure = std::current_exception();
                }
            };
            runAndWait([](void* context) { (*static_cast<decltype(guarded)*>(context))(); }, &guarded);
            if (failure) std::rethrow_exception(failure);
        } else {
            static_assert(!std::is_reference_v<Result>, "return a value: a reference may not outlive the block");
            std::optional<Result> result;
            auto guarded = [&] {
                try {
                    result.emplace(std::forward<Body>(body)());
                } catch (...) {
                    failure = std::current_exception();
                }
            };
            runAndWait([](void* context) { (*static_cast<decltype(guarded)*>(context))(); }, &guarded);
            if (failure) std::rethrow_exception(failure);
            return std::move(*result);
        }
    }

  protected:
    DispatchQueue(std::string label, DispatchQoS qos) noexcept;

  private:
    friend class SerialQueue;
    friend class InPlace;

    virtual void enqueue(Work&& work, DispatchQoS qos) = 0;

    /// See `InPlace`.
    virtual void runInPlace(Work&& work) { enqueue(std::move(work), {}); }

    virtual void enqueueAt(SteadyInstant deadline, Work&& work, DispatchQoS qos) = 0;
    /// Whether other blocks wait for the threads of this queue; a drain job that keeps one asks it.
    [[nodiscard]] virtual bool hasWaiting() const noexcept = 0;

    /// The queue that this one's blocks occupy as well: the target of a serial queue.
    [[nodiscard]] virtual const DispatchQueue* target() const noexcept { return nullptr; }

    void runAndWait(void (*body)(void*), void* context);

    std::string label_;
    DispatchQoS qos_;
};

}  // namespace corvane
