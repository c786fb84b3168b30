#include <string>

#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

std::coroutine_handle<> ContinuationPause::commit() noexcept {
    const std::coroutine_handle<> waiting = task();
    const Phase before = phase_.exchange(Phase::suspended, std::memory_order_acq_rel);
    return before == Phase::resumed ? waiting : nullptr;
}

void ContinuationPause::resume() noexcept {
    // A task that has not suspended yet sees this when it is about to, and may go on, and be gone, from here on.
    if (phase_.exchange(Phase::resumed, std::memory_order_acq_rel) == Phase::suspended) enqueueTask();
}

ContinuationTicket::~ContinuationTicket() {
    if (!isClaimed_.load(std::memory_order_acquire)) {
        fatalError("a continuation was dropped, and its task would wait for ever", where_);
    }
}

void ContinuationTicket::reportSecondClaim() const {
    fatalError("a continuation was resumed twice", where_);
}

}  // namespace corvane
