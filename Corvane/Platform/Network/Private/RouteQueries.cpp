#include <fcntl.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include <Corvane/Platform/Network/Private/PathState.hpp>
#include <Corvane/Platform/Network/Private/RouteQueries.hpp>
#include <Corvane/Platform/Network/Private/SocketCookie.hpp>

namespace corvane::network {

namespace {

using netlink::Bytes;

/// The kernel looks a route up for an address, not for "anywhere": these stand for it. Both are of one of the
/// name system's root servers, which every network that leads anywhere leads to; nothing is sent to them.
constexpr std::array internet = {
    SocketAddress(SocketAddress::IPv4Bytes{198, 41, 0, 4}),
    SocketAddress(SocketAddress::IPv6Bytes{0x20, 0x01, 0x05, 0x03, 0xBA, 0x3E, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0x30}),
};

/// The kernel answers before `send` returns; the limit is for whatever stands in for one and does not.
constexpr timeval answerLimit{.tv_sec = 1, .tv_usec = 0};

/// The largest message that the kernel builds.
constexpr std::size_t answerBytes = 32768;

template <class Head>
class Request {
  public:
    Request(std::uint16_t type, const Head& head) noexcept : type_(type) { put(head); }

    template <class T>
    void add(std::uint16_t type, const T& value) noexcept {
        put(nlattr{.nla_len = static_cast<std::uint16_t>(sizeof(nlattr) + sizeof value), .nla_type = type});
        put(value);
    }

    /// The finished request.
    [[nodiscard]] Bytes bytes(std::uint32_t sequence) noexcept {
        const nlmsghdr header{.nlmsg_len = static_cast<std::uint32_t>(size_),
                              .nlmsg_type = type_,
                              .nlmsg_flags = NLM_F_REQUEST,
                              .nlmsg_seq = sequence,
                              .nlmsg_pid = 0};
        std::memcpy(bytes_.data(), &header, sizeof header);
        return Bytes(bytes_).first(size_);
    }

  private:
    /// Everything that we put is a multiple of four bytes long, so nothing has to be padded.
    template <class T>
    void put(const T& value) noexcept {
        static_assert(sizeof value % 4 == 0);
        std::memcpy(bytes_.data() + size_, &value, sizeof value);
        size_ += sizeof value;
    }

    const std::uint16_t type_;
    std::array<std::byte, 128> bytes_{};
    std::size_t size_ = sizeof(nlmsghdr);
};

}  // namespace

RouteQueries& RouteQueries::shared() {
    static auto* const queries = new RouteQueries;
    return *queries;
}

RouteQueries::Result<void> RouteQueries::open() {
    const std::lock_guard lock(mutex_);
    return openLocked();
}

RouteQueries::Result<void> RouteQueries::openLocked() {
    if (socket_ >= 0 && socketCookie(socket_) == cookie_) return {};
    // If we had one, somebody has closed it, and its number is not ours to close.
    socket_ = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (socket_ < 0) return std::unexpected(NetworkPathError{errno});
    cookie_ = socketCookie(socket_);
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &answerLimit, sizeof answerLimit);
    buffer_.resize(answerBytes);
    return {};
}

RouteQueries::Result<NetworkFlags> RouteQueries::flags(const SocketAddress& target) {
    const std::lock_guard lock(mutex_);
    if (auto opened = openLocked(); !opened) return std::unexpected(opened.error());
    if (!target.isUnspecified()) return ask(target);
    for (const SocketAddress& representative : internet) {
        auto flags = ask(representative);
        if (!flags || flags->contains(NetworkFlag::reachable)) return flags;
    }
    return NetworkFlags();
}

RouteQueries::Result<NetworkFlags> RouteQueries::ask(const SocketAddress& target) {
    Request route(RTM_GETROUTE, rtmsg{.rtm_family = static_cast<unsigned char>(target.family()),
                                      .rtm_dst_len = static_cast<unsigned char>(target.bytes().size() * 8),
                                      .rtm_src_len = 0,
                                      .rtm_tos = 0,
                                      .rtm_table = 0,
                                      .rtm_protocol = 0,
                                      .rtm_scope = 0,
                                      .rtm_type = 0,
                                      .rtm_flags = 0});
    if (target.isIPv6()) {
        SocketAddress::IPv6Bytes bytes;
        std::ranges::copy(target.bytes(), bytes.begin());
        route.add(RTA_DST, bytes);
        if (target.scope() != 0) route.add(RTA_OIF, target.scope());
    } else {
        SocketAddress::IPv4Bytes bytes;
        std::ranges::copy(target.bytes(), bytes.begin());
        route.add(RTA_DST, bytes);
    }
    const auto routeAnswer = exchange(route.bytes(++sequence_), RTM_NEWROUTE);
    if (!routeAnswer) return std::unexpected(routeAnswer.error());
    const auto routeState = routeAnswer->and_then(parseRoute);
    if (!routeState || routeState->link == 0) return flagsOf(target, routeState, std::nullopt);

    ifinfomsg linkHead{};
    linkHead.ifi_family = AF_UNSPEC;
    linkHead.ifi_index = routeState->link;
    Request link(RTM_GETLINK, linkHead);
    link.add(IFLA_EXT_MASK, std::uint32_t{RTEXT_FILTER_SKIP_STATS});
    const auto linkAnswer = exchange(link.bytes(++sequence_), RTM_NEWLINK);
    if (!linkAnswer) return std::unexpected(linkAnswer.error());
    auto linkState = linkAnswer->and_then(parseLink);
    if (linkState) {
        auto type = deviceTypeOf(routeState->link, linkState->name);
        if (!type) return std::unexpected(type.error());
        linkState->deviceType = *std::move(type);
    }
    return flagsOf(target, routeState, linkState);
}

RouteQueries::Result<std::optional<Bytes>> RouteQueries::exchange(Bytes request, std::uint16_t answerType) {
    const auto sent = ::send(socket_, request.data(), request.size(), 0);
    if (sent < 0) return std::unexpected(fail(errno));
    for (;;) {
        // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection): the answer is there, see `answerLimit`
        const auto received = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
        if (received < 0 && errno == EINTR) continue;
        if (received < 0) return std::unexpected(fail(errno));
        Bytes rest = Bytes(buffer_).first(static_cast<std::size_t>(received));
        while (const auto message = netlink::takeMessage(rest)) {
            if (message->sequence != sequence_) continue;
            if (message->type == answerType) return message->payload;
            if (message->type != NLMSG_ERROR) continue;
            const int code = -netlink::read<int>(message->payload).value_or(-EBADMSG);
            // These are about asking; all others say that there is no route, or no link of that number.
            for (const int each : {ENOMEM, ENOBUFS, EPERM, EBADMSG, 0}) {
                if (code == each) return std::unexpected(fail(code));
            }
            return std::nullopt;
        }
    }
}

RouteQueries::Result<std::string> RouteQueries::deviceTypeOf(int link, const std::string& name) {
    if (device_.link == link) return device_.type;
    const int file = ::open(("/sys/class/net/" + name + "/uevent").c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        // Without a descriptor a modem would pass for a wireless card; all else says that there is no such file.
        const int code = errno;
        if (code == EMFILE || code == ENFILE || code == ENOMEM) return std::unexpected(NetworkPathError{code});
        return {};
    }
    std::array<char, 1024> text;
    // The kernel writes this text as we read it; there is nothing to wait for.
    const auto length = ::read(file, text.data(), text.size());  // NOLINT(clang-analyzer-unix.BlockInCriticalSection)
    ::close(file);
    if (length <= 0) return {};
    device_ = {.link = link, .type = parseDeviceType({text.data(), static_cast<std::size_t>(length)})};
    return device_.type;
}

NetworkPathError RouteQueries::fail(int code) noexcept {
    // What may still come is not the answer to the next question.
    if (socketCookie(socket_) == cookie_) ::close(socket_);
    socket_ = -1;
    return {code};
}

}  // namespace corvane::network
