#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include <Corvane/Export.hpp>

namespace corvane {

/// Memory for the frames of tasks: each thread keeps some of those it gave back, so that a task which awaits others in
/// a loop does not go to the heap. What a thread keeps is bounded (16 KiB for each of fifteen sizes) and freed when
/// the thread ends. A frame may be given back on another thread than it was taken on.
///
/// Under AddressSanitizer nothing is kept: it could not tell a frame's next life from its last.
class CORVANE_EXPORT TaskFrames {
  public:
    TaskFrames() = delete;

    [[nodiscard]] static void* take(std::size_t size) {
        const std::size_t number = (size + step - 1) / step;
        if (number < shelfCount) {
            Shelf& shelf = shelves[number];
            if (shelf.first != nullptr) {
                ++shelf.room;
                return std::exchange(shelf.first, shelf.first->next);
            }
        }
        return ::operator new(number * step);
    }

    static void giveBack(void* frame, std::size_t size) noexcept {
        const std::size_t number = (size + step - 1) / step;
        if (number < shelfCount) {
            Shelf& shelf = shelves[number];
            if (shelf.room > 0) {
                --shelf.room;
                shelf.first = ::new (frame) Spare{shelf.first};
                return;
            }
        }
        giveBackSlowly(frame);
    }

  private:
    struct Spare {
        Spare* next;
    };

    /// Spare frames of one size, and how many more may come. A thread's shelves have no room until it has seen to it
    /// that they are cleared at its end.
    struct Shelf {
        Spare* first;
        std::uint32_t room;
    };

    class Clearance;

    static void giveBackSlowly(void* frame) noexcept;

    static constexpr std::size_t step = 64;
    static constexpr std::size_t shelfCount = 16;

    inline static constinit thread_local std::array<Shelf, shelfCount> shelves{};
};

}  // namespace corvane
