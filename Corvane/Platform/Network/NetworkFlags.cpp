#include <Corvane/Platform/Network/NetworkFlags.hpp>

namespace corvane {

std::string NetworkFlags::description() const {
    const auto letter = [this](NetworkFlag flag, char set) { return contains(flag) ? set : '-'; };
    return {letter(NetworkFlag::isWWAN, 'W'),
            letter(NetworkFlag::reachable, 'R'),
            ' ',
            letter(NetworkFlag::connectionRequired, 'c'),
            letter(NetworkFlag::transientConnection, 't'),
            letter(NetworkFlag::interventionRequired, 'i'),
            letter(NetworkFlag::connectionOnTraffic, 'C'),
            letter(NetworkFlag::connectionOnDemand, 'D'),
            letter(NetworkFlag::isLocalAddress, 'l'),
            letter(NetworkFlag::isDirect, 'd')};
}

}  // namespace corvane
