#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <utility>

#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>
#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>
#include <Corvane/Platform/Dispatch/Private/DeadlineHeap.hpp>
#include <Corvane/Platform/Dispatch/Private/WakeWord.hpp>
#include <Corvane/Platform/Dispatch/Work.hpp>

namespace corvane {

class DispatchQueue;

/// The thread that holds blocks for global and serial queues until their time has come, and then queues them.
/// Made on first use, never destroyed.
class DelayedWork final : public ClockClient {
  public:
    static DelayedWork& shared();

    struct Entry final : Deadline {
        Entry(std::shared_ptr<DispatchQueue> target, Work&& block, DispatchQoS blockQoS)
            : queue(std::move(target)), work(std::move(block)), qos(blockQoS) {}

        const std::shared_ptr<DispatchQueue> queue;
        Work work;
        const DispatchQoS qos;
    };

    /// Gives `work` to `queue`, which it holds until then, at `deadline`. With a null queue `work` runs on this thread:
    /// for blocks of the library that only queue something. Any thread.
    std::shared_ptr<Entry> add(SteadyInstant deadline, std::shared_ptr<DispatchQueue> queue, Work&& work,
                               DispatchQoS qos);

    /// Forgets an entry; does nothing when it has come due. Any thread.
    void remove(Entry& entry) noexcept;

    [[nodiscard]] ClockActivity activity() const noexcept override;
    void clockMoved() noexcept override;

  private:
    DelayedWork();
    [[noreturn]] void run() noexcept;

    WakeWord wakeWord_;
    mutable std::mutex mutex_;
    mutable DeadlineHeap<Entry> deadlines_;
    std::uint64_t taken_ = 0;
    std::uint64_t finished_ = 0;
};

}  // namespace corvane
