#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include <Corvane/Export.hpp>

namespace corvane {

/// Memory for the frames of tasks: each thread keeps some of those it gave back, so that a task which awaits others in
/// a loop does not go to the heap. Threads that give back more than they take pass frames on to the others, in batches.
/// What is kept is bounded, for each of fifteen sizes: 16 KiB a thread, freed when it ends, and 128 KiB for all.
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
        return takeSlowly(number);
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
        giveBackSlowly(frame, number);
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
    class Depot;

    [[nodiscard]] static void* takeSlowly(std::size_t number);
    static void giveBackSlowly(void* frame, std::size_t number) noexcept;
    [[nodiscard]] static bool openShelves() noexcept;

    static constexpr std::size_t step = 64;
    static constexpr std::size_t shelfCount = 16;

    inline static constinit thread_local std::array<Shelf, shelfCount> shelves{};
};

}  // namespace corvane
