#include <Corvane/Platform/Dispatch/TaskFrames.hpp>

namespace corvane {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool keepsFrames = false;
#elif defined(__has_feature)
constexpr bool keepsFrames = !__has_feature(address_sanitizer);
#else
constexpr bool keepsFrames = true;
#endif

enum class Shelves : unsigned char { closed, open, cleared };

constinit thread_local Shelves shelvesOfThisThread = Shelves::closed;

}  // namespace

/// Opens a thread's shelves, and clears them when the thread ends.
class TaskFrames::Clearance {
  public:
    Clearance() noexcept {
        constexpr std::size_t bytesPerShelf = 16 * 1024;
        for (std::size_t number = 1; number < shelfCount; ++number)
            shelves[number].room = static_cast<std::uint32_t>(bytesPerShelf / (number * step));
        shelvesOfThisThread = Shelves::open;
    }

    ~Clearance() {
        shelvesOfThisThread = Shelves::cleared;
        for (Shelf& shelf : shelves) {
            shelf.room = 0;
            while (shelf.first != nullptr)
                ::operator delete(std::exchange(shelf.first, shelf.first->next));
        }
    }

    Clearance(const Clearance&) = delete;
    Clearance& operator=(const Clearance&) = delete;
};

void TaskFrames::giveBackSlowly(void* frame) noexcept {
    ::operator delete(frame);
    if (keepsFrames && shelvesOfThisThread == Shelves::closed) {
        const thread_local Clearance clearance;
    }
}

}  // namespace corvane
