#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include <Corvane/Platform/Dispatch/Work.hpp>

namespace corvane {

/// While one lives, the calling thread gives the main queue its blocks a few at a time, in their order, and the rest at
/// the end. A main thread that is faster than the one that feeds it would fall asleep, and have to be woken, between
/// any two of them.
///
/// For code that queues blocks in quick succession and waits for nothing. A virtual clock does not know of the blocks
/// that are held back.
class MainQueueBatch {
  public:
    MainQueueBatch() noexcept : outer_(std::exchange(current_, this)) {}

    ~MainQueueBatch() {
        flush();
        current_ = outer_;
    }

    MainQueueBatch(const MainQueueBatch&) = delete;
    MainQueueBatch& operator=(const MainQueueBatch&) = delete;

    /// The innermost of the calling thread, null when there is none.
    [[nodiscard]] static MainQueueBatch* current() noexcept { return current_; }

    void add(Work&& work) {
        blocks_[size_++] = std::move(work);
        if (size_ == blocks_.size()) flush();
    }

  private:
    void flush();

    inline static constinit thread_local MainQueueBatch* current_ = nullptr;

    MainQueueBatch* const outer_;
    /// Enough that a wake-up is small beside them, and few enough that the main thread does not wait for long.
    std::array<Work, 8> blocks_;
    std::size_t size_ = 0;
};

}  // namespace corvane
