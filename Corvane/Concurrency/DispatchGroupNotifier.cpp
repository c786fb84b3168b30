#include <mutex>
#include <utility>

#include <Corvane/Concurrency/DispatchGroupNotifier.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>

namespace corvane::detail {

DispatchGroupNotifier::~DispatchGroupNotifier() {
    stopTimer();
}

void DispatchGroupNotifier::setCallback(DispatchQueue& queue, std::function<void()> execute) {
    queue_ = queue.shared_from_this();
    // What ends here is the callback before.
    exchangeCallback(execute ? std::make_shared<const std::function<void()>>(std::move(execute)) : nullptr);
}

void DispatchGroupNotifier::startTimer(double timeout) {
    if (timer_ != nullptr) return;
    const auto expired = [weak = weak_from_this()](Timer&) {
        const auto self = weak.lock();
        if (self == nullptr) return;
        self->stopTimer();
        self->notify();
    };
    timer_ = Timer::scheduled(timeout, false, expired, RunLoop::current());
}

void DispatchGroupNotifier::stopTimer() noexcept {
    if (const auto timer = std::exchange(timer_, nullptr)) timer->invalidate();
}

void DispatchGroupNotifier::notify() {
    if (queue_ == nullptr) return;
    queue_->async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (self == nullptr) return;
        if (const auto callback = self->callback()) (*callback)();
    });
}

void DispatchGroupNotifier::forget() {
    stopTimer();
    exchangeCallback(nullptr);
}

auto DispatchGroupNotifier::exchangeCallback(Callback callback) noexcept -> Callback {
    const std::lock_guard lock(lock_);
    return std::exchange(callback_, std::move(callback));
}

auto DispatchGroupNotifier::callback() noexcept -> Callback {
    const std::lock_guard lock(lock_);
    return callback_;
}

}  // namespace corvane::detail
