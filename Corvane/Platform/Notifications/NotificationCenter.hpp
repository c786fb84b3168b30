#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Notifications/Notification.hpp>
#include <Corvane/Platform/Notifications/NotificationObservation.hpp>

namespace corvane {

/// Passes notifications from those who post them to those who observe them, neither knowing the other.
///
/// An observer is called once for each notification posted while it observes, in the order of registration. Whoever
/// starts to observe during a pass is not called in it; whoever stops during a pass before his turn is not called.
/// Without a queue the observer is called by `post`, on the posting thread; with one it is called on that queue
/// later, and `post` does not wait. Blocks may be called on several threads at once, may post, observe and stop
/// observing, and must not throw.
///
/// All operations may be called on any thread.
class CORVANE_EXPORT NotificationCenter {
  public:
    using Block = std::function<void(const Notification&)>;

    NotificationCenter();

    /// Ends all observations; what is on its way on a queue is not delivered any more.
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The process's center, never destroyed.
    [[nodiscard]] static NotificationCenter& defaultCenter();

    /// Observes notifications called `name` for as long as the returned observation lives.
    [[nodiscard]] NotificationObservation addObserver(NotificationName name, Block block);

    /// Observes notifications called `name`, or of every name when it is absent, posted with `object`, or with any
    /// when it is null, on `queue`, or on the posting thread when it is null. The object is held weakly; once it has
    /// ended, nothing matches any more.
    [[nodiscard]] NotificationObservation addObserver(std::optional<NotificationName> name,
                                                      const std::shared_ptr<const void>& object, DispatchQueue* queue,
                                                      Block block);

    void post(Notification notification);

    /// Posts a notification made of these.
    template <class T = void>
    void post(NotificationName name, std::shared_ptr<T> object = nullptr, Notification::UserInfo userInfo = {}) {
        post(Notification(name, std::move(object), std::move(userInfo)));
    }

    /// The same without a sender.
    void post(NotificationName name, std::nullptr_t, Notification::UserInfo userInfo) {
        post(Notification(name, nullptr, std::move(userInfo)));
    }

    class Registry;

  private:
    std::shared_ptr<Registry> registry_;
};

}  // namespace corvane
