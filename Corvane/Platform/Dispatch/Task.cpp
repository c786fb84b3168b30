#include <cmath>
#include <coroutine>
#include <cstdint>
#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <utility>
#include <vector>

#include <Corvane/Platform/Dispatch/CancellationError.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/Private/DelayedWork.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

namespace {

/// A stop callback that ends a sleep.
struct Waking {
    Continuation<bool> sleeper;

    void operator()() const { sleeper.tryResume(false); }
};

Task<std::expected<void, AnyError>> sleepFor(double seconds) {
    if (!CurrentTask::isNotCancelled()) co_return std::unexpected<AnyError>(CancellationError());

    DelayedWork& delayed = DelayedWork::shared();
    std::shared_ptr<DelayedWork::Entry> alarm;
    std::optional<std::stop_callback<Waking>> cancellation;
    const bool hasSlept = co_await withContinuation<bool>([&](const Continuation<bool>& sleeper) {
        alarm = delayed.add(deadlineAfter(seconds), nullptr, [sleeper] { sleeper.tryResume(true); }, {});
        cancellation.emplace(CurrentTask::stopToken(), Waking{sleeper});
    });
    cancellation.reset();
    if (hasSlept) co_return {};
    delayed.remove(*alarm);
    co_return std::unexpected<AnyError>(CancellationError());
}

}  // namespace

void reportEmptyTask(std::source_location where) {
    fatalError("a task was used that is empty: it was moved from, awaited or started before", where);
}

void endUnstartedTask(std::coroutine_handle<> task) noexcept {
    struct Ending {
        std::uint32_t depth = 0;
        std::vector<std::coroutine_handle<>> rest;
    };

    static constinit thread_local Ending* current = nullptr;
    constexpr std::uint32_t depthLimit = 64;

    if (current != nullptr) {
        if (current->depth == depthLimit) return current->rest.push_back(task);
        ++current->depth;
        task.destroy();
        --current->depth;
        return;
    }
    Ending ending;
    current = &ending;
    task.destroy();
    while (!ending.rest.empty()) {
        const std::coroutine_handle<> next = ending.rest.back();
        ending.rest.pop_back();
        next.destroy();
    }
    current = nullptr;
}

bool CurrentTask::isNotCancelled() noexcept {
    const TaskContext* const context = TaskContext::current();
    return context == nullptr || !context->cancellation().isCancelled();
}

std::stop_token CurrentTask::stopToken() {
    const TaskContext* const context = TaskContext::current();
    return context != nullptr ? context->cancellation().token() : std::stop_token();
}

Task<std::expected<void, AnyError>> CurrentTask::sleep(double seconds) {
    const double nanoseconds = seconds * 1e9;
    if (!std::isfinite(nanoseconds) || nanoseconds <= -1.0 || nanoseconds >= 0x1p64) {
        fatalError("a task cannot sleep for " + std::to_string(seconds) + " seconds");
    }
    return sleepFor(seconds);
}

}  // namespace corvane
