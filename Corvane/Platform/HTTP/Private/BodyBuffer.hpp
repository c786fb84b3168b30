#pragma once

#include <cstddef>
#include <string_view>

#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/Private/BufferStore.hpp>

namespace corvane::http {

/// Where a body grows as it arrives. It ends as a `Data` without being copied.
class BodyBuffer {
  public:
    BodyBuffer() noexcept = default;
    BodyBuffer(const BodyBuffer&) = delete;
    BodyBuffer& operator=(const BodyBuffer&) = delete;
    ~BodyBuffer();

    /// Makes room for `bytes` more. That is what a server says, so no more than `trusted` is believed of it. False
    /// when there is no memory.
    bool reserve(std::size_t bytes) noexcept;

    /// False when there is no memory.
    bool append(std::string_view bytes) noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    /// Hands the bytes over and starts anew.
    [[nodiscard]] Data take();

    void clear() noexcept;

  private:
    static constexpr std::size_t trusted = std::size_t{8} << 20U;

    bool moveTo(std::size_t capacity) noexcept;

    /// Holds the bytes and the padding behind them.
    Buffer buffer_;
    std::size_t size_ = 0;
};

}  // namespace corvane::http
