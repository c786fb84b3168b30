#include <sys/random.h>

#include <cstring>

#include <Corvane/Platform/Collections/SeededHash.hpp>

namespace corvane::detail {

namespace {

__extension__ using Product = unsigned __int128;

// Odd constants with about as many ones as zeros: digits of the golden ratio and of the square root of two.
constexpr std::uint64_t goldenRatio = 0x9e3779b97f4a7c15;
constexpr std::uint64_t rootOfTwo = 0x6a09e667f3bcc909;

struct Seeds {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

Seeds drawSeeds() noexcept {
    Seeds seeds;
    // Before the kernel's pool is ready the address of a local has to do: never block for this.
    if (::getrandom(&seeds, sizeof seeds, GRND_NONBLOCK) != sizeof seeds) {
        seeds = {goldenRatio, reinterpret_cast<std::uintptr_t>(&seeds) * rootOfTwo};
    }
    return seeds;
}

const Seeds& processSeeds() noexcept {
    static const Seeds seeds = drawSeeds();
    return seeds;
}

/// Both halves of the product, folded: every bit of the result depends on every bit of `a` and `b`. Whoever chooses
/// the keys must not know either operand, as zero swallows the other one.
std::uint64_t mixed(std::uint64_t a, std::uint64_t b) noexcept {
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

template <class Word>
std::uint64_t load(const char* text) noexcept {
    Word word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

}  // namespace

std::size_t seededHash(std::string_view text) noexcept {
    const Seeds& seeds = processSeeds();
    const char* p = text.data();
    std::size_t left = text.size();
    std::uint64_t hash = seeds.first ^ (left * goldenRatio);
    // The last words overlap what comes before them, so that nothing is read byte by byte.
    std::uint64_t a = 0;
    std::uint64_t b = 0;
    if (left >= 8) {
        for (; left > 16; left -= 16, p += 16)
            hash = mixed(load<std::uint64_t>(p) ^ seeds.second, load<std::uint64_t>(p + 8) ^ hash);
        a = load<std::uint64_t>(left >= 8 ? p : p + left - 8);
        b = load<std::uint64_t>(p + left - 8);
    } else if (left >= 4) {
        a = load<std::uint32_t>(p);
        b = load<std::uint32_t>(p + left - 4);
    } else if (left > 0) {
        const auto byte = [p](std::size_t i) { return static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])); };
        a = byte(0) << 16 | byte(left / 2) << 8 | byte(left - 1);
    }
    hash = mixed(a ^ seeds.second, b ^ hash);
    return static_cast<std::size_t>(mixed(hash ^ goldenRatio, seeds.first ^ rootOfTwo));
}

std::size_t seededHash(std::uint64_t word) noexcept {
    const Seeds& seeds = processSeeds();
    return static_cast<std::size_t>(mixed(word ^ seeds.first, seeds.second ^ goldenRatio));
}

}  // namespace corvane::detail
