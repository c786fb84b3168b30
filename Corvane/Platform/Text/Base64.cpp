#include <array>
#include <cstdint>
#include <memory>

#include <Corvane/Platform/Text/Base64.hpp>

namespace corvane {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint32_t invalid = 0xFF00'0000;

/// The six bits of each character, or a number that stays visible when four of them are put together.
constexpr auto sextets = [] {
    std::array<std::uint32_t, 256> table{};
    table.fill(invalid);
    for (std::uint32_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = i;
    return table;
}();

std::uint32_t sextet(char character) noexcept {
    return sextets[static_cast<unsigned char>(character)];
}

}  // namespace

std::string base64Text(std::span<const std::byte> bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (; !bytes.empty(); bytes = bytes.subspan(bytes.size() < 3 ? bytes.size() : 3)) {
        const auto byte = [&](std::size_t i) {
            return i < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i]) : 0;
        };
        const std::uint32_t group = byte(0) << 16 | byte(1) << 8 | byte(2);
        text += alphabet[group >> 18];
        text += alphabet[group >> 12 & 63];
        text += bytes.size() > 1 ? alphabet[group >> 6 & 63] : '=';
        text += bytes.size() > 2 ? alphabet[group & 63] : '=';
    }
    return text;
}

std::optional<Data> base64Data(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    if (text.empty()) return Data();
    std::size_t padding = 0;
    while (padding < 2 && text[text.size() - 1 - padding] == '=')
        ++padding;

    const std::size_t size = text.size() / 4 * 3 - padding;
    // Whole groups are written, so the last one may reach into the padding, which is zero.
    const auto buffer = std::make_shared<std::byte[]>(size + Data::padding);
    std::byte* out = buffer.get();
    for (; !text.empty(); text.remove_prefix(4)) {
        const bool isLast = text.size() == 4;
        const auto at = [&](std::size_t i) { return isLast && i >= 4 - padding ? 0 : sextet(text[i]); };
        const std::uint32_t parts[] = {at(0), at(1), at(2), at(3)};
        if (((parts[0] | parts[1] | parts[2] | parts[3]) & invalid) != 0) return std::nullopt;
        const std::uint32_t group = parts[0] << 18 | parts[1] << 12 | parts[2] << 6 | parts[3];
        for (const int shift : {16, 8, 0})
            *out++ = static_cast<std::byte>(group >> shift & 0xFF);
    }
    return Data::adopting(buffer, size);
}

}  // namespace corvane
