#include <bit>

#include <Corvane/Core/Hasher.hpp>

namespace corvane {

void Hasher::State::round() noexcept {
    v0 += v1;
    v2 += v3;
    v1 = std::rotl(v1, 13) ^ v0;
    v3 = std::rotl(v3, 16) ^ v2;
    v0 = std::rotl(v0, 32) + v3;
    v2 += v1;
    v1 = std::rotl(v1, 17) ^ v2;
    v3 = std::rotl(v3, 21) ^ v0;
    v2 = std::rotl(v2, 32);
}

void Hasher::State::compress(std::uint64_t word) noexcept {
    v3 ^= word;
    round();
    v0 ^= word;
}

void Hasher::feed(unsigned char byte) noexcept {
    pending_ |= std::uint64_t{byte} << (8 * (length_ % 8));
    if (++length_ % 8 != 0) return;
    state_.compress(pending_);
    pending_ = 0;
}

void Hasher::combine(std::string_view text) noexcept {
    constexpr unsigned char terminator = 0xff;
    for (const char character : text)
        feed(static_cast<unsigned char>(character));
    feed(terminator);
}

std::uint64_t Hasher::finalize() const noexcept {
    State state = state_;
    state.compress(pending_ | length_ << 56);
    state.v2 ^= 0xff;
    for (int round = 0; round < 3; ++round)
        state.round();
    return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}

}  // namespace corvane
