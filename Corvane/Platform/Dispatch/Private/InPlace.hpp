#pragma once

#include <utility>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>

namespace corvane {

/// Saves the way to another thread, and its wake-up, for blocks that take less than that.
class InPlace {
  public:
    InPlace() = delete;

    /// Runs `work` on `queue` on the calling thread, before it returns, when the queue is a serial one on the pool that
    /// has nothing to do; queues it otherwise. Order and exclusion are those of `async`, and what is queued meanwhile
    /// runs on the pool.
    ///
    /// For blocks of the library's own that are short, wait for nothing, call nothing of the user's and do not mind
    /// whether they run at once.
    static void run(DispatchQueue& queue, Work work) { queue.runInPlace(std::move(work)); }
};

}  // namespace corvane
