#include <sys/random.h>

#include <array>

#include <Corvane/Platform/Collections/SeededHash.hpp>

namespace corvane::detail {

namespace {

using Seeds = std::array<std::uint64_t, 2>;

Seeds randomSeeds() noexcept {
    Seeds seeds{};
    // Before the kernel's pool is ready the address of a local has to do: never block for this.
    if (::getrandom(seeds.data(), sizeof seeds, GRND_NONBLOCK) != sizeof seeds) {
        // Digits of the golden ratio and of the square root of two.
        seeds = {0x9e3779b97f4a7c15, reinterpret_cast<std::uintptr_t>(&seeds) * 0x6a09e667f3bcc909};
    }
    // Odd: neither zero, which hides what it is multiplied with, nor with low bits that hide anything.
    for (std::uint64_t& seed : seeds)
        seed |= 1;
    return seeds;
}

}  // namespace

constinit HashSeeds::Drawn HashSeeds::drawn_;

HashSeeds HashSeeds::draw() noexcept {
    static const Seeds seeds = randomSeeds();
    drawn_.second.store(seeds[1], std::memory_order_relaxed);
    drawn_.first.store(seeds[0], std::memory_order_release);
    return {seeds[0], seeds[1]};
}

}  // namespace corvane::detail
