#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/ExcessMemory.hpp>
#include <Corvane/Platform/Dispatch/Work.hpp>

namespace corvane {

/// A growing ring of blocks: first in, first out, and back in at the front. Not thread-safe.
class WorkRing {
  public:
    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    void pushBack(Work&& work) {
        if (size_ == capacity_) grow();
        at(size_) = std::move(work);
        peak_ = std::max(peak_, ++size_);
    }

    void pushFront(Work&& work) {
        if (size_ == capacity_) grow();
        first_ = (first_ - 1) & (capacity_ - 1);
        ++size_;
        at(0) = std::move(work);
    }

    [[nodiscard]] Work popFront() noexcept {
        Work work = std::move(at(0));
        first_ = (first_ + 1) & (capacity_ - 1);
        --size_;
        return work;
    }

    /// To be called when the ring was found empty: lets memory go that is not needed any more.
    void rest() noexcept {
        const std::size_t used = std::exchange(peak_, 0);
        if (!excess_.shouldGo(capacity_, used)) return;
        slots_.reset();
        capacity_ = 0;
        first_ = 0;
    }

  private:
    static constexpr std::size_t smallest = 64;

    Work& at(std::size_t index) noexcept { return slots_[(first_ + index) & (capacity_ - 1)]; }

    void grow() {
        const std::size_t capacity = std::max(smallest, capacity_ * 2);
        auto slots = std::make_unique<Work[]>(capacity);
        for (std::size_t index = 0; index < size_; ++index)
            slots[index] = std::move(at(index));
        slots_ = std::move(slots);
        capacity_ = capacity;
        first_ = 0;
    }

    std::unique_ptr<Work[]> slots_;
    /// A power of two, or zero.
    std::size_t capacity_ = 0;
    std::size_t first_ = 0;
    std::size_t size_ = 0;
    /// The most blocks since the last rest.
    std::size_t peak_ = 0;
    ExcessMemory excess_;
};

}  // namespace corvane
