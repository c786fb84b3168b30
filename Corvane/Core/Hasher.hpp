#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// A seeded 64-bit hash of texts that is the same in every process and on every machine: SipHash-1-3
/// (Aumasson and Bernstein), keyed by the seed, little-endian in the first half of the key, and zero in the
/// second half.
///
/// A text goes in as its bytes and a terminator, the byte 0xFF, which no UTF-8 text holds: "ab", "c" and "a",
/// "bc" differ. A value: one thread at a time.
class CORVANE_EXPORT Hasher {
  public:
    explicit constexpr Hasher(std::uint64_t seed = 0) noexcept
        : state_{seed ^ 0x736f6d6570736575, 0x646f72616e646f6d, seed ^ 0x6c7967656e657261, 0x7465646279746573} {}

    /// Feeds `text` and its terminator.
    void combine(std::string_view text) noexcept;

    /// The hash of everything fed so far; more may be fed afterwards.
    [[nodiscard]] std::uint64_t finalize() const noexcept;

  private:
    struct State {
        std::uint64_t v0, v1, v2, v3;

        void round() noexcept;
        void compress(std::uint64_t word) noexcept;
    };

    void feed(unsigned char byte) noexcept;

    State state_;
    std::uint64_t pending_ = 0;  // bytes not yet compressed, the first in the lowest place
    std::uint64_t length_ = 0;   // bytes fed
};

}  // namespace corvane
