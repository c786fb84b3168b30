#include <atomic>
#include <mutex>

#include <Corvane/Platform/Dispatch/TaskFrames.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool keepsFrames = false;
#elif defined(__has_feature)
constexpr bool keepsFrames = !__has_feature(address_sanitizer);
#else
constexpr bool keepsFrames = true;
#endif

constexpr std::size_t bytesPerShelf = 16 * 1024;
constexpr std::size_t bytesPerDepot = 128 * 1024;

enum class Shelves : unsigned char { closed, open, cleared };

constinit thread_local Shelves shelvesOfThisThread = Shelves::closed;

constexpr std::uint32_t framesPerShelf(std::size_t frameSize) noexcept {
    return static_cast<std::uint32_t>(bytesPerShelf / frameSize);
}

}  // namespace

/// Frames of one size on their way from threads with too many to threads with none: half a shelf at a time.
class TaskFrames::Depot {
  public:
    /// Null when there is no batch.
    [[nodiscard]] Spare* take() noexcept {
        if (count_.load(std::memory_order_relaxed) == 0) return nullptr;
        const std::lock_guard lock(lock_);
        const std::uint32_t count = count_.load(std::memory_order_relaxed);
        if (count == 0) return nullptr;
        count_.store(count - 1, std::memory_order_relaxed);
        return batches_[count - 1];
    }

    /// False when the depot is full.
    [[nodiscard]] bool add(Spare* batch) noexcept {
        const std::lock_guard lock(lock_);
        const std::uint32_t count = count_.load(std::memory_order_relaxed);
        if (count == batches_.size()) return false;
        batches_[count] = batch;
        count_.store(count + 1, std::memory_order_relaxed);
        return true;
    }

    [[nodiscard]] static Depot& of(std::size_t number) noexcept {
        static constinit std::array<Depot, shelfCount> depots{};
        return depots[number];
    }

  private:
    UnfairLock lock_;
    std::atomic<std::uint32_t> count_ = 0;
    std::array<Spare*, 2 * bytesPerDepot / bytesPerShelf> batches_{};
};

/// Opens a thread's shelves, and clears them when the thread ends.
class TaskFrames::Clearance {
  public:
    Clearance() noexcept {
        for (std::size_t number = 1; number < shelfCount; ++number)
            shelves[number].room = framesPerShelf(number * step);
        shelvesOfThisThread = Shelves::open;
    }

    ~Clearance() {
        shelvesOfThisThread = Shelves::cleared;
        for (Shelf& shelf : shelves) {
            shelf.room = 0;
            destroy(std::exchange(shelf.first, nullptr));
        }
    }

    Clearance(const Clearance&) = delete;
    Clearance& operator=(const Clearance&) = delete;

    static void destroy(Spare* frames) noexcept {
        while (frames != nullptr)
            ::operator delete(std::exchange(frames, frames->next));
    }
};

bool TaskFrames::openShelves() noexcept {
    if (keepsFrames && shelvesOfThisThread == Shelves::closed) {
        const thread_local Clearance clearance;
    }
    return shelvesOfThisThread == Shelves::open;
}

void* TaskFrames::takeSlowly(std::size_t number) {
    if (number < shelfCount && openShelves()) {
        if (Spare* const batch = Depot::of(number).take()) {
            Shelf& shelf = shelves[number];
            shelf.room -= framesPerShelf(number * step) / 2 - 1;
            shelf.first = batch->next;
            return batch;
        }
    }
    return ::operator new(number * step);
}

void TaskFrames::giveBackSlowly(void* frame, std::size_t number) noexcept {
    if (number >= shelfCount || !openShelves()) {
        ::operator delete(frame);
        return;
    }
    Shelf& shelf = shelves[number];
    if (shelf.room == 0) {
        Spare* const batch = shelf.first;
        Spare* last = batch;
        const std::uint32_t size = framesPerShelf(number * step) / 2;
        for (std::uint32_t i = 1; i < size; ++i)
            last = last->next;
        shelf.first = std::exchange(last->next, nullptr);
        shelf.room = size;
        if (!Depot::of(number).add(batch)) Clearance::destroy(batch);
    }
    --shelf.room;
    shelf.first = ::new (frame) Spare{shelf.first};
}

}  // namespace corvane
