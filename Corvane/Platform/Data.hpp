#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// An immutable run of bytes whose copies share one buffer: a response body, a payload, a file's content.
///
/// Copies are cheap and may be used from several threads. The buffer ends in at least 64 bytes that may be
/// read beyond `size()`, so that a JSON reader needs no copy of its own.
class CORVANE_EXPORT Data {
  public:
    /// Bytes behind the content that may be read (their values say nothing).
    static constexpr std::size_t padding = 64;

    Data() noexcept = default;
    explicit Data(std::span<const std::byte> bytes);
    explicit Data(std::string_view text);

    /// Takes over a buffer that was filled elsewhere; `size + padding` bytes of it must be readable.
    static Data adopting(std::shared_ptr<const std::byte[]> buffer, std::size_t size) noexcept;

    [[nodiscard]] const std::byte* data() const noexcept { return buffer_.get(); }

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }

    [[nodiscard]] std::span<const std::byte> bytes() const noexcept { return {buffer_.get(), size_}; }

    /// The bytes seen as text; nothing is checked.
    [[nodiscard]] std::string_view text() const noexcept;

    [[nodiscard]] bool operator==(const Data& other) const noexcept;

  private:
    std::shared_ptr<const std::byte[]> buffer_;
    std::size_t size_ = 0;
};

}  // namespace corvane
