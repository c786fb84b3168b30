#include <linux/netlink.h>

#include <algorithm>

#include <Corvane/Platform/Network/Private/NetlinkMessage.hpp>

namespace corvane::netlink {

namespace {

constexpr std::size_t aligned(std::size_t length) noexcept {
    return (length + 3) & ~std::size_t{3};
}

/// Cuts `length` bytes and their padding, of which the last one may lack some, off `rest`; they include a header
/// of `header` bytes, which is left out.
std::optional<Bytes> cut(Bytes& rest, std::size_t length, std::size_t header) noexcept {
    if (length < header || length > rest.size()) return std::nullopt;
    const Bytes payload = rest.subspan(header, length - header);
    rest = rest.subspan(std::min(aligned(length), rest.size()));
    return payload;
}

}  // namespace

std::optional<Message> takeMessage(Bytes& rest) noexcept {
    const auto header = read<nlmsghdr>(rest);
    if (!header) return std::nullopt;
    const auto payload = cut(rest, header->nlmsg_len, sizeof *header);
    if (!payload) return std::nullopt;
    return Message{header->nlmsg_type, header->nlmsg_flags, header->nlmsg_seq, *payload};
}

std::optional<Attribute> takeAttribute(Bytes& rest) noexcept {
    const auto header = read<nlattr>(rest);
    if (!header) return std::nullopt;
    const auto payload = cut(rest, header->nla_len, sizeof *header);
    if (!payload) return std::nullopt;
    return Attribute{static_cast<std::uint16_t>(header->nla_type & NLA_TYPE_MASK), *payload};
}

}  // namespace corvane::netlink
