#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include <Corvane/Platform/Dispatch/Private/ExcessMemory.hpp>
#include <Corvane/Platform/Dispatch/Work.hpp>

namespace corvane {

/// Keeps the memory of a list of blocks that has been worked off for the next one: a queue that swaps its list with
/// a spare does not allocate.
class SpareBlocks {
  public:
    [[nodiscard]] std::vector<Work> take() noexcept { return std::move(blocks_); }

    /// `blocks` is empty, and has held `used` blocks at most since it was taken. It is left to the caller to destroy
    /// when it is not wanted any more.
    void giveBack(std::vector<Work>&& blocks, std::size_t used) noexcept {
        if (!excess_.shouldGo(blocks.capacity(), used)) blocks_ = std::move(blocks);
    }

  private:
    std::vector<Work> blocks_;
    ExcessMemory excess_;
};

}  // namespace corvane
