#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <Corvane/Platform/Notifications/NotificationCenter.hpp>

namespace corvane {

using NotificationObserver = NotificationObservation::Observer;

/// The observers of a center, as a list that is never changed but replaced: a pass goes over the list it found.
class NotificationCenter::Registry {
  public:
    using Observers = std::vector<std::shared_ptr<NotificationObserver>>;

    void add(std::shared_ptr<NotificationObserver> observer);
    void remove(const NotificationObserver& observer) noexcept;
    void removeAll() noexcept;

    [[nodiscard]] std::shared_ptr<const Observers> observers() const;

  private:
    mutable std::mutex mutex_;
    std::shared_ptr<const Observers> observers_ = std::make_shared<const Observers>();
};

class NotificationObservation::Observer {
  public:
    Observer(std::optional<NotificationName> name, const std::shared_ptr<const void>& object, DispatchQueue* queue,
             NotificationCenter::Block block, const std::shared_ptr<NotificationCenter::Registry>& registry);

    [[nodiscard]] bool matches(const Notification& notification) const noexcept;

    [[nodiscard]] DispatchQueue* queue() const noexcept { return queue_; }

    void call(const Notification& notification) const;

    void deactivate() noexcept { isActive_.store(false, std::memory_order_release); }

    /// Takes it out of its center, when that still lives.
    void removeFromCenter() noexcept;

  private:
    std::optional<std::string> name_;
    std::weak_ptr<const void> object_;
    bool matchesAnyObject_;
    DispatchQueue* queue_;
    /// Empty for the queues that live for ever.
    std::shared_ptr<DispatchQueue> queueOwner_;
    NotificationCenter::Block block_;
    std::weak_ptr<NotificationCenter::Registry> registry_;
    std::atomic<bool> isActive_ = true;
};

}  // namespace corvane
