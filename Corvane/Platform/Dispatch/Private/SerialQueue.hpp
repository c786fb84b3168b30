#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Private/SpareBlocks.hpp>

namespace corvane {

/// Runs one block at a time: a drain job on the target takes all blocks there are and runs them in order.
class SerialQueue final : public DispatchQueue {
  public:
    SerialQueue(std::string label, DispatchQoS qos, std::shared_ptr<DispatchQueue> target) noexcept;

  private:
    enum class State : unsigned char { idle, scheduled, draining };

    void enqueue(Work&& work, DispatchQoS qos) override;
    void runInPlace(Work&& work) override;
    void enqueueAt(SteadyInstant deadline, Work&& work, DispatchQoS qos) override;
    [[nodiscard]] bool hasWaiting() const noexcept override;

    [[nodiscard]] const DispatchQueue* target() const noexcept override { return target_.get(); }

    void postDrain(QoSClass qosClass);
    void drain() noexcept;

    const std::shared_ptr<DispatchQueue> target_;
    /// Whether the queue shares its threads with no queue that runs one block at a time.
    const bool isOnPool_;
    std::mutex mutex_;
    std::vector<Work> blocks_;
    State state_ = State::idle;
    /// The class that the scheduled drain job was posted at, or of the most urgent block since.
    QoSClass drainClass_ = QoSClass::unspecified;
    std::atomic<bool> hasBlocks_ = false;
    SpareBlocks spare_;
};

}  // namespace corvane
