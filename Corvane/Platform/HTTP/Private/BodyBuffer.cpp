#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include <Corvane/Platform/HTTP/Private/BodyBuffer.hpp>

namespace corvane::http {

BodyBuffer::~BodyBuffer() {
    clear();
}

bool BodyBuffer::moveTo(std::size_t capacity) noexcept {
    const Buffer larger = BufferStore::shared().take(capacity + Data::padding);
    if (larger.bytes == nullptr) return false;
    if (size_ > 0) std::memcpy(larger.bytes, buffer_.bytes, size_);
    BufferStore::shared().giveBack(std::exchange(buffer_, larger));
    return true;
}

bool BodyBuffer::reserve(std::size_t bytes) noexcept {
    const std::size_t wanted = size_ + std::min(bytes, trusted);
    return wanted + Data::padding <= buffer_.capacity || moveTo(wanted);
}

bool BodyBuffer::append(std::string_view bytes) noexcept {
    if (bytes.empty()) return true;
    const std::size_t needed = size_ + bytes.size();
    if (needed + Data::padding > buffer_.capacity && !moveTo(std::max(needed, size_ + size_ / 2))) return false;
    std::memcpy(buffer_.bytes + size_, bytes.data(), bytes.size());
    size_ = needed;
    return true;
}

Data BodyBuffer::take() {
    if (size_ == 0) return {};
    // A body may be kept for long: what was grown step by step gives back the half that it does not need.
    if (buffer_.capacity - size_ > std::max(Data::padding * 2, size_ / 4)) static_cast<void>(moveTo(size_));
    const std::size_t size = std::exchange(size_, 0);
    const Buffer buffer = std::exchange(buffer_, {});
    return Data::adopting(
        std::shared_ptr<const std::byte[]>(reinterpret_cast<const std::byte*>(buffer.bytes),
                                           [buffer](const std::byte*) { BufferStore::shared().giveBack(buffer); }),
        size);
}

void BodyBuffer::clear() noexcept {
    if (buffer_.bytes != nullptr) BufferStore::shared().giveBack(std::exchange(buffer_, {}));
    size_ = 0;
}

}  // namespace corvane::http
