#include <algorithm>
#include <utility>

#include <Corvane/Platform/Notifications/Private/NotificationRegistry.hpp>

namespace corvane {

// Lists and observers are let go outside the lock: what a block holds may come back here when it ends.

void NotificationCenter::Registry::add(std::shared_ptr<NotificationObserver> observer) {
    std::shared_ptr<const Observers> previous;
    const std::lock_guard lock(mutex_);
    auto changed = std::make_shared<Observers>();
    changed->reserve(observers_->size() + 1);
    *changed = *observers_;
    changed->push_back(std::move(observer));
    previous = std::exchange(observers_, std::move(changed));
}

void NotificationCenter::Registry::remove(const NotificationObserver& observer) noexcept {
    std::shared_ptr<const Observers> previous;
    const std::lock_guard lock(mutex_);
    auto changed = std::make_shared<Observers>(*observers_);
    std::erase_if(*changed, [&](const auto& candidate) { return candidate.get() == &observer; });
    previous = std::exchange(observers_, std::move(changed));
}

void NotificationCenter::Registry::removeAll() noexcept {
    for (const auto& observer : *observers())
        observer->deactivate();
    std::shared_ptr<const Observers> previous;
    const std::lock_guard lock(mutex_);
    previous = std::exchange(observers_, std::make_shared<const Observers>());
}

auto NotificationCenter::Registry::observers() const -> std::shared_ptr<const Observers> {
    const std::lock_guard lock(mutex_);
    return observers_;
}

NotificationObservation::Observer::Observer(std::optional<NotificationName> name,
                                            const std::shared_ptr<const void>& object, DispatchQueue* queue,
                                            NotificationCenter::Block block,
                                            const std::shared_ptr<NotificationCenter::Registry>& registry)
    : object_(object),
      matchesAnyObject_(object == nullptr),
      queue_(queue),
      block_(std::move(block)),
      registry_(registry) {
    if (name) name_.emplace(name->text());
    if (queue != nullptr) queueOwner_ = queue->weak_from_this().lock();
}

bool NotificationObservation::Observer::matches(const Notification& notification) const noexcept {
    if (name_ && *name_ != notification.name().text()) return false;
    // An object that has ended matches nothing, whatever now stands at its address.
    return matchesAnyObject_ || (notification.object() != nullptr && object_.lock() == notification.object());
}

void NotificationObservation::Observer::call(const Notification& notification) const {
    if (isActive_.load(std::memory_order_acquire)) block_(notification);
}

void NotificationObservation::Observer::removeFromCenter() noexcept {
    deactivate();
    if (const auto registry = registry_.lock()) registry->remove(*this);
}

NotificationObservation::NotificationObservation(std::shared_ptr<Observer> observer) noexcept
    : observer_(std::move(observer)) {}

NotificationObservation& NotificationObservation::operator=(NotificationObservation&& other) noexcept {
    if (this != &other) {
        remove();
        observer_ = std::move(other.observer_);
    }
    return *this;
}

void NotificationObservation::remove() noexcept {
    // Taken out first: what the block holds may come back to this observation when it ends.
    if (const auto observer = std::exchange(observer_, nullptr)) observer->removeFromCenter();
}

}  // namespace corvane
