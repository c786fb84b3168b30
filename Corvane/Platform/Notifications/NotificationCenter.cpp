#include <utility>

#include <Corvane/Platform/Notifications/Private/NotificationRegistry.hpp>

namespace corvane {

NotificationCenter::NotificationCenter() : registry_(std::make_shared<Registry>()) {}

NotificationCenter::~NotificationCenter() {
    registry_->removeAll();
}

NotificationCenter& NotificationCenter::defaultCenter() {
    static auto* const center = new NotificationCenter;
    return *center;
}

NotificationObservation NotificationCenter::addObserver(NotificationName name, Block block) {
    return addObserver(name, nullptr, nullptr, std::move(block));
}

NotificationObservation NotificationCenter::addObserver(std::optional<NotificationName> name,
                                                        const std::shared_ptr<const void>& object, DispatchQueue* queue,
                                                        Block block) {
    auto observer = std::make_shared<NotificationObserver>(name, object, queue, std::move(block), registry_);
    registry_->add(observer);
    return NotificationObservation(std::move(observer));
}

void NotificationCenter::post(Notification notification) {
    // Nothing of the center is touched once blocks are being called: one of them may end it.
    const auto observers = registry_->observers();
    const auto shared = std::make_shared<const Notification>(std::move(notification));
    for (const auto& observer : *observers) {
        if (!observer->matches(*shared)) continue;
        if (DispatchQueue* const queue = observer->queue()) {
            queue->async([observer, shared] { observer->call(*shared); });
        } else {
            observer->call(*shared);
        }
    }
}

}  // namespace corvane
