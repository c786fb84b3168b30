#pragma once

#include <utility>

namespace corvane {

/// What the calling thread does when the block that it runs has ended. A task that goes from one serial queue to
/// another gives its pool a block and ends its own: nobody need be woken for what the same worker fetches a moment
/// later.
class BlockEnd {
  public:
    BlockEnd() = delete;

    /// While one lives, the block is about to end: it does nothing any more but queue what comes next.
    class Near {
      public:
        Near() noexcept : before_(std::exchange(isNear, true)) {}

        ~Near() { isNear = before_; }

        Near(const Near&) = delete;
        Near& operator=(const Near&) = delete;

      private:
        bool before_;
    };

    /// Whether a worker is back at its pool in a moment.
    [[nodiscard]] static bool isAtHand() noexcept { return isNear && isLast; }

    [[nodiscard]] static bool isLastBlock() noexcept { return isLast; }

    /// To be said before each block: whether the worker then comes back to its pool, without further blocks.
    static void announceLast(bool is) noexcept { isLast = is; }

  private:
    inline static constinit thread_local bool isNear = false;
    inline static constinit thread_local bool isLast = false;
};

}  // namespace corvane
