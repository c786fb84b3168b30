#include <array>
#include <cstdint>
#include <random>

#include <fmt/format.h>

#include <Corvane/Platform/Text/Private/RandomUUIDText.hpp>

namespace corvane {

std::string randomUUIDText() {
    std::random_device random;
    std::array<std::uint32_t, 4> words{random(), random(), random(), random()};
    words[1] = (words[1] & 0xFFFF'0FFF) | 0x4000;
    words[2] = (words[2] & 0x3FFF'FFFF) | 0x8000'0000;
    return fmt::format("{:08X}-{:04X}-{:04X}-{:04X}-{:04X}{:08X}", words[0], words[1] >> 16, words[1] & 0xFFFF,
                       words[2] >> 16, words[2] & 0xFFFF, words[3]);
}

}  // namespace corvane
