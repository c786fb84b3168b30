#pragma once

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <type_traits>

#include <Corvane/Export.hpp>

namespace corvane {

namespace detail {

/// What makes the hashes of this process its own. Drawn on first use, then the same everywhere.
class HashSeeds {
  public:
    [[nodiscard]] static HashSeeds ofProcess() noexcept {
        const std::uint64_t first = drawn_.first.load(std::memory_order_acquire);
        if (first == 0) [[unlikely]]
            return draw();
        return {first, drawn_.second.load(std::memory_order_relaxed)};
    }

    std::uint64_t first = 0;
    std::uint64_t second = 0;

  private:
    struct Drawn {
        /// Zero until both are there.
        std::atomic<std::uint64_t> first = 0;
        std::atomic<std::uint64_t> second = 0;
    };

    HashSeeds(std::uint64_t one, std::uint64_t other) noexcept : first(one), second(other) {}

    [[nodiscard]] CORVANE_EXPORT static HashSeeds draw() noexcept;

    CORVANE_EXPORT static Drawn drawn_;
};

/// Both halves of the product, folded: every bit of the result depends on every bit of `a` and `b`. Whoever chooses
/// the keys must not know either operand, as zero swallows the other one.
[[nodiscard]] inline std::uint64_t foldedProduct(std::uint64_t a, std::uint64_t b) noexcept {
    __extension__ using Product = unsigned __int128;
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <class Word>
[[nodiscard]] std::uint64_t loadedWord(const char* text) noexcept {
    Word word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

[[nodiscard]] inline std::size_t seededHash(std::string_view text) noexcept {
    const HashSeeds seeds = HashSeeds::ofProcess();
    const char* p = text.data();
    std::size_t left = text.size();
    std::uint64_t hash = seeds.first;
    std::uint64_t a = 0;
    std::uint64_t b = 0;
    // The last words overlap what comes before them, so that hardly anything is read byte by byte.
    if (left > 16) {
        for (; left > 16; left -= 16, p += 16)
            hash = foldedProduct(loadedWord<std::uint64_t>(p) ^ seeds.second, loadedWord<std::uint64_t>(p + 8) ^ hash);
        a = loadedWord<std::uint64_t>(p + left - 16);
        b = loadedWord<std::uint64_t>(p + left - 8);
    } else if (left >= 8) {
        a = loadedWord<std::uint64_t>(p);
        b = loadedWord<std::uint64_t>(p + left - 8);
    } else if (left >= 4) {
        a = loadedWord<std::uint32_t>(p);
        b = loadedWord<std::uint32_t>(p + left - 4);
    } else if (left > 0) {
        const auto byte = [p](std::size_t i) { return static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])); };
        a = byte(0) << 16 | byte(left / 2) << 8 | byte(left - 1);
    }
    hash = foldedProduct(a ^ seeds.second, b ^ hash);
    // Apart from the bytes, so that none can be chosen to undo the length.
    return static_cast<std::size_t>(foldedProduct(hash ^ seeds.second, seeds.first ^ text.size()));
}

[[nodiscard]] inline std::size_t seededHash(std::uint64_t word) noexcept {
    const HashSeeds seeds = HashSeeds::ofProcess();
    return static_cast<std::size_t>(foldedProduct(foldedProduct(word ^ seeds.first, seeds.second), seeds.first));
}

}  // namespace detail

/// The hash that Corvane's collections use for their keys, under a seed that every process draws anew: a back end that
/// answers with chosen keys must not be able to make them all collide. Never the same in two processes, so nothing may
/// store it. (`Hasher` is for hashes that are stored.)
///
/// Texts, integers, enumerations, and types whose `rawValue()` is one of these are protected in this way. Other types
/// are hashed by their `std::hash` first, and are as safe from chosen keys as that is.
template <class Key>
struct SeededHash {
    /// Every part of a hash says as much as any other, so collections need not mix it again.
    using is_avalanching = void;

    [[nodiscard]] std::size_t operator()(const Key& key) const noexcept {
        if constexpr (std::is_enum_v<Key> || std::integral<Key>) {
            return detail::seededHash(static_cast<std::uint64_t>(key));
        } else if constexpr (requires { key.rawValue(); }) {
            return SeededHash<std::remove_cvref_t<decltype(key.rawValue())>>()(key.rawValue());
        } else {
            return detail::seededHash(static_cast<std::uint64_t>(std::hash<Key>()(key)));
        }
    }
};

/// Texts are looked up by anything that is seen as text, without a copy.
template <class Key>
    requires std::convertible_to<const Key&, std::string_view>
struct SeededHash<Key> {
    using is_avalanching = void;
    using is_transparent = void;

    [[nodiscard]] std::size_t operator()(std::string_view key) const noexcept { return detail::seededHash(key); }
};

}  // namespace corvane
