#include <algorithm>
#include <cstring>
#include <utility>

#include <Corvane/Platform/Data.hpp>

namespace corvane {

Data::Data(std::span<const std::byte> bytes) {
    if (bytes.empty()) return;
    const auto buffer = std::make_shared_for_overwrite<std::byte[]>(bytes.size() + padding);
    std::memcpy(buffer.get(), bytes.data(), bytes.size());
    // Readers may look at the padding: give them defined bytes, and none of what the heap held before.
    std::memset(buffer.get() + bytes.size(), 0, padding);
    buffer_ = buffer;
    size_ = bytes.size();
}

Data::Data(std::string_view text) : Data(std::as_bytes(std::span(text))) {}

Data Data::adopting(std::shared_ptr<const std::byte[]> buffer, std::size_t size) noexcept {
    Data data;
    data.buffer_ = std::move(buffer);
    data.size_ = size;
    return data;
}

std::string_view Data::text() const noexcept {
    return {reinterpret_cast<const char*>(buffer_.get()), size_};
}

bool Data::operator==(const Data& other) const noexcept {
    if (buffer_ == other.buffer_) return size_ == other.size_;
    return std::ranges::equal(bytes(), other.bytes());
}

}  // namespace corvane
