#include <cerrno>
#include <system_error>

#include <Corvane/Platform/Network/NetworkPathService.hpp>

namespace corvane {

namespace {

/// RFC 1035, 2.3.4, without the length octets that a text does not show.
constexpr std::size_t longestName = 253;

}  // namespace

std::string NetworkPathError::description() const {
    return std::system_category().message(code);
}

NetworkPathCallback::~NetworkPathCallback() = default;

NetworkPath::~NetworkPath() = default;

NetworkPath::Result<std::shared_ptr<NetworkPath>> NetworkPath::make(std::string_view hostName) {
    if (hostName.empty() || hostName.size() > longestName || hostName.contains('\0')) {
        return std::unexpected(NetworkPathError{EINVAL});
    }
    return NetworkPathService::current()->makePath(std::string(hostName));
}

NetworkPath::Result<std::shared_ptr<NetworkPath>> NetworkPath::make(const SocketAddress& address) {
    return NetworkPathService::current()->makePath(address);
}

}  // namespace corvane
