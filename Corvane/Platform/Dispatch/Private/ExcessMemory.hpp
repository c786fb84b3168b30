#pragma once

#include <chrono>
#include <cstddef>

namespace corvane {

/// Decides when memory that a burst of blocks has left behind goes: once little of it has been needed for ten
/// seconds. These are real seconds, whatever clock is in force.
class ExcessMemory {
  public:
    /// To be asked when `capacity` places are empty again, of which `used` were in use at once.
    [[nodiscard]] bool shouldGo(std::size_t capacity, std::size_t used) noexcept {
        if (capacity <= alwaysKept) return false;
        const auto now = std::chrono::steady_clock::now();
        if (used < capacity / 8) return now - lastNeeded_ > patience;
        lastNeeded_ = now;
        return false;
    }

  private:
    static constexpr std::size_t alwaysKept = 256;
    static constexpr std::chrono::seconds patience{10};

    std::chrono::steady_clock::time_point lastNeeded_;
};

}  // namespace corvane
