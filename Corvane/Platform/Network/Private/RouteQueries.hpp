#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <Corvane/Platform/Network/NetworkPath.hpp>
#include <Corvane/Platform/Network/Private/NetlinkMessage.hpp>

namespace corvane::network {

/// Asks the kernel how it would reach an address. One socket for the process, opened on first use and kept, so that
/// a process that has run out of descriptors still gets answers. Any thread.
class RouteQueries {
  public:
    template <class T>
    using Result = NetworkPath::Result<T>;

    /// Never destroyed.
    [[nodiscard]] static RouteQueries& shared();

    /// Makes sure that the kernel can be asked.
    [[nodiscard]] Result<void> open();

    /// The flags of an address; the zero addresses stand for the general internet.
    [[nodiscard]] Result<NetworkFlags> flags(const SocketAddress& target);

  private:
    RouteQueries() = default;

    Result<void> openLocked();
    Result<NetworkFlags> ask(const SocketAddress& target);
    /// The payload of the kernel's answer, in `buffer_`; absent when it answers that there is no such thing.
    Result<std::optional<netlink::Bytes>> exchange(netlink::Bytes request, std::uint16_t answerType);
    /// DEVTYPE of a link's device; fails when there is no descriptor to look for it.
    Result<std::string> deviceTypeOf(int link, const std::string& name);
    NetworkPathError fail(int code) noexcept;

    std::mutex mutex_;
    int socket_ = -1;
    std::optional<std::uint64_t> cookie_;
    std::uint32_t sequence_ = 0;
    std::vector<std::byte> buffer_;

    /// What was looked up last: the type of a device never changes, and the kernel does not reuse the numbers of links.
    struct {
        int link = 0;
        std::string type;
    } device_;
};

}  // namespace corvane::network
