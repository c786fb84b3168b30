#include "League.hpp"

#include <algorithm>

namespace matchday {

League::Summary League::summary() const {
    const MeteredRemote::Traffic traffic = remote_->traffic();
    return {.asks = asks_,
            .requests = traffic.requests,
            .notModified = traffic.notModified,
            .bytesReceived = traffic.bytesReceived,
            .bytesSaved = bytesDelivered_ - std::min(bytesDelivered_, traffic.bytesReceived)};
}

}  // namespace matchday
