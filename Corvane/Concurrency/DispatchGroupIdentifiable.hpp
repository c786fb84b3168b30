#pragma once

#include <algorithm>
#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <Corvane/Concurrency/DispatchGroupNotifier.hpp>

namespace corvane {

/// Waits for jobs that are known by name: each enters with an item and leaves with an equal one, and whoever asked is
/// told when no item is left, or when it has lasted too long.
///
///     DispatchGroupIdentifiable<std::string> documents;
///     documents.enter("fixtures");
///     documents.enter("table");
///     documents.notify(DispatchQueue::main(), 5.0, [&] { show(documents.waitingItems()); });
///     ...
///     documents.leave("table");
///
/// The callback stays: it is called again each time a `leave` finds no item waiting, also when a time-out came first.
/// It is called on its queue and not once the group has ended; on another thread than the group's it may be running at
/// that moment. It may do anything with the group if its queue is the main one, and must not throw.
///
/// The operations are for one thread, whose run loop carries the time-out: normally the main thread. The queue may be
/// any. Neither copied nor moved; share it through a pointer.
template <std::equality_comparable T>
class DispatchGroupIdentifiable {
  public:
    DispatchGroupIdentifiable() = default;
    DispatchGroupIdentifiable(const DispatchGroupIdentifiable&) = delete;
    DispatchGroupIdentifiable& operator=(const DispatchGroupIdentifiable&) = delete;

    /// The items that have entered and not left, in the order of entry; one may be there several times.
    [[nodiscard]] const std::vector<T>& waitingItems() const noexcept { return waitingItems_; }

    void enter(T item) { waitingItems_.push_back(std::move(item)); }

    /// Takes out the first item equal to `item`. When none waits then, ends the time-out and tells, even if `item`
    /// never entered.
    void leave(const T& item) {
        const auto found = std::ranges::find(waitingItems_, item);
        if (found != waitingItems_.end()) waitingItems_.erase(found);
        if (!waitingItems_.empty()) return;
        notifier_->stopTimer();
        notifier_->notify();
    }

    /// Has `execute` called on `queue`, instead of what was to be called before, at the next `leave` that leaves nobody
    /// waiting: not now, even if nobody is. A `timeout` in seconds has it called then as well, with the items left
    /// where they are; it is ignored while an earlier one runs. One of zero or less, or that is no number, counts as
    /// 0.1 ms, and an infinite one never expires.
    void notify(DispatchQueue& queue, std::optional<double> timeout, std::function<void()> execute) {
        if (timeout) notifier_->startTimer(*timeout);
        // Last: the callback before ends with it, and may be all that holds this group.
        notifier_->setCallback(queue, std::move(execute));
    }

    void notify(DispatchQueue& queue, std::function<void()> execute) {
        notify(queue, std::nullopt, std::move(execute));
    }

    /// Forgets the callback, the items and the time-out.
    void invalidate() {
        waitingItems_.clear();
        notifier_->forget();
    }

  private:
    std::vector<T> waitingItems_;
    /// Ours alone: blocks and the timer hold it weakly.
    const std::shared_ptr<detail::DispatchGroupNotifier> notifier_ = std::make_shared<detail::DispatchGroupNotifier>();
};

}  // namespace corvane
