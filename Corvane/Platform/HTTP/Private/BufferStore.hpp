#pragma once

#include <array>
#include <cstddef>
#include <mutex>

namespace corvane::http {

/// A malloc'ed run of bytes.
struct Buffer {
    char* bytes = nullptr;
    std::size_t capacity = 0;
};

/// Keeps a few large buffers that bodies have left. Fresh memory of that size comes page by page from the kernel,
/// which costs more than receiving the body; the same pages serve the next one. Any thread.
class BufferStore {
  public:
    /// Smaller buffers are malloc's business.
    static constexpr std::size_t smallestKept = std::size_t{64} << 10U;
    /// All that is kept, at most.
    static constexpr std::size_t mostKept = std::size_t{2} << 20U;

    [[nodiscard]] static BufferStore& shared() noexcept;

    /// A buffer of at least `capacity` bytes, not much larger, whose content says nothing; null without memory.
    [[nodiscard]] Buffer take(std::size_t capacity) noexcept;

    /// Keeps the buffer, or frees it.
    void giveBack(Buffer buffer) noexcept;

  private:
    std::mutex mutex_;
    std::array<Buffer, 16> kept_;
    std::size_t keptBytes_ = 0;
    /// The place whose buffer goes when a new one comes.
    std::size_t oldest_ = 0;
};

}  // namespace corvane::http
