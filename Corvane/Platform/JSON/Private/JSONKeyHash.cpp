#include <sys/random.h>

#include <cstring>

#include <Corvane/Platform/JSON/Private/JSONKeyHash.hpp>

namespace corvane::detail {

namespace {

__extension__ using Product = unsigned __int128;

/// Both halves of the product, folded: every bit of the result depends on every bit of `a` and `b`.
std::uint64_t mixed(std::uint64_t a, std::uint64_t b) noexcept {
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t drawSeed() noexcept {
    std::uint64_t seed = 0;
    // Before the kernel's pool is ready the address of a local has to do: never block for this.
    if (::getrandom(&seed, sizeof seed, GRND_NONBLOCK) != sizeof seed) seed = reinterpret_cast<std::uintptr_t>(&seed);
    return seed | 1;
}

}  // namespace

std::size_t jsonKeyHash(std::string_view key) noexcept {
    static const std::uint64_t seed = drawSeed();
    // Odd constants with about as many ones as zeros: digits of the golden ratio and of the square root of
    // two.
    constexpr std::uint64_t goldenRatio = 0x9e3779b97f4a7c15;
    constexpr std::uint64_t rootOfTwo = 0x6a09e667f3bcc909;

    std::uint64_t hash = seed ^ mixed(key.size() ^ goldenRatio, rootOfTwo);
    while (!key.empty()) {
        std::uint64_t word = 0;
        const std::size_t length = key.size() < sizeof word ? key.size() : sizeof word;
        std::memcpy(&word, key.data(), length);
        hash = mixed(hash ^ word, seed ^ goldenRatio);
        key.remove_prefix(length);
    }
    return static_cast<std::size_t>(mixed(hash, rootOfTwo));
}

}  // namespace corvane::detail
