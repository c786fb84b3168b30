#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <Corvane/Platform/HTTP/Private/BodyBuffer.hpp>

namespace corvane::http {

BodyBuffer::~BodyBuffer() {
    std::free(bytes_);
}

// malloc and realloc: nothing is zeroed that is about to be overwritten, and large buffers grow by moving
// pages.
bool BodyBuffer::setCapacity(std::size_t capacity) noexcept {
    void* const moved = std::realloc(bytes_, capacity + Data::padding);
    if (moved == nullptr) return false;
    bytes_ = static_cast<char*>(moved);
    capacity_ = capacity;
    return true;
}

bool BodyBuffer::reserve(std::size_t bytes) noexcept {
    const std::size_t wanted = size_ + std::min(bytes, trusted);
    return wanted <= capacity_ || setCapacity(wanted);
}

bool BodyBuffer::append(std::string_view bytes) noexcept {
    if (bytes.empty()) return true;
    const std::size_t needed = size_ + bytes.size();
    if (needed > capacity_ && !setCapacity(std::max(needed, capacity_ + capacity_ / 2))) return false;
    std::memcpy(bytes_ + size_, bytes.data(), bytes.size());
    size_ = needed;
    return true;
}

Data BodyBuffer::take() {
    if (size_ == 0) {
        clear();
        return {};
    }
    // What was grown step by step may be half empty.
    if (capacity_ - size_ > size_ / 8) static_cast<void>(setCapacity(size_));
    const std::size_t size = std::exchange(size_, 0);
    capacity_ = 0;
    const auto* const bytes = reinterpret_cast<const std::byte*>(std::exchange(bytes_, nullptr));
    return Data::adopting(std::shared_ptr<const std::byte[]>(
                              bytes, [](const std::byte* buffer) { std::free(const_cast<std::byte*>(buffer)); }),
                          size);
}

void BodyBuffer::clear() noexcept {
    std::free(std::exchange(bytes_, nullptr));
    size_ = 0;
    capacity_ = 0;
}

}  // namespace corvane::http
