#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace corvane::netlink {

using Bytes = std::span<const std::byte>;

/// One message of a datagram (RFC 3549, 2.3.2).
struct Message {
    std::uint16_t type = 0;
    std::uint16_t flags = 0;
    std::uint32_t sequence = 0;
    Bytes payload;
};

/// One attribute of a message; its type without the bits that mark nesting and byte order.
struct Attribute {
    std::uint16_t type = 0;
    Bytes payload;
};

/// Takes the next message or attribute off `rest`; absent at the end, and at the first one that does not fit.
[[nodiscard]] std::optional<Message> takeMessage(Bytes& rest) noexcept;
[[nodiscard]] std::optional<Attribute> takeAttribute(Bytes& rest) noexcept;

/// The value that `bytes` begin with; absent when they are too few.
template <class T>
    requires std::is_trivially_copyable_v<T>
[[nodiscard]] std::optional<T> read(Bytes bytes) noexcept {
    if (bytes.size() < sizeof(T)) return std::nullopt;
    T value;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

}  // namespace corvane::netlink
