#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include <Corvane/Platform/Data.hpp>

namespace corvane::http {

/// Where a body grows as it arrives. It ends as a `Data` without being copied.
class BodyBuffer {
  public:
    BodyBuffer() noexcept = default;
    BodyBuffer(const BodyBuffer&) = delete;
    BodyBuffer& operator=(const BodyBuffer&) = delete;
    ~BodyBuffer();

    /// Makes room for `bytes` more. That is what a server says, so no more than `trusted` is believed of it.
    bool reserve(std::size_t bytes) noexcept;

    /// False when there is no memory.
    bool append(std::string_view bytes) noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    /// Hands the bytes over and starts anew.
    [[nodiscard]] Data take();

    void clear() noexcept;

  private:
    static constexpr std::size_t trusted = std::size_t{8} << 20U;

    bool setCapacity(std::size_t capacity) noexcept;

    char* bytes_ = nullptr;
    std::size_t size_ = 0;
    /// How much fits, the padding behind it not counted.
    std::size_t capacity_ = 0;
};

}  // namespace corvane::http
