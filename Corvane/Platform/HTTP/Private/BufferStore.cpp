#include <cstdlib>
#include <utility>

#include <Corvane/Platform/HTTP/Private/BufferStore.hpp>

namespace corvane::http {

BufferStore& BufferStore::shared() noexcept {
    // Leaked: bodies may outlive every static.
    static auto* const store = new BufferStore;
    return *store;
}

Buffer BufferStore::take(std::size_t capacity) noexcept {
    if (capacity >= smallestKept && capacity <= mostKept) {
        const std::lock_guard lock(mutex_);
        for (Buffer& kept : kept_) {
            if (kept.capacity < capacity || kept.capacity > capacity + capacity / 4) continue;
            keptBytes_ -= kept.capacity;
            return std::exchange(kept, {});
        }
    }
    auto* const bytes = static_cast<char*>(std::malloc(capacity));
    return {bytes, bytes != nullptr ? capacity : 0};
}

void BufferStore::giveBack(Buffer buffer) noexcept {
    if (buffer.capacity >= smallestKept && buffer.capacity <= mostKept) {
        const std::lock_guard lock(mutex_);
        std::swap(buffer, kept_[oldest_]);
        oldest_ = (oldest_ + 1) % kept_.size();
        keptBytes_ += kept_[(oldest_ + kept_.size() - 1) % kept_.size()].capacity - buffer.capacity;
        // Freed below: what was replaced. Beyond the limit the next ones go, too.
        while (keptBytes_ > mostKept) {
            Buffer& surplus = kept_[oldest_];
            keptBytes_ -= surplus.capacity;
            std::free(std::exchange(surplus, {}).bytes);
            oldest_ = (oldest_ + 1) % kept_.size();
        }
    }
    std::free(buffer.bytes);
}

}  // namespace corvane::http
