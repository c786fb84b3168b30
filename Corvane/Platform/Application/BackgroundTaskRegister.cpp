#include <utility>

#include <Corvane/Platform/Application/BackgroundTaskRegister.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>

namespace corvane {

BackgroundTaskRegister::Identifier BackgroundTaskRegister::begin(std::string name,
                                                                 std::function<void()> expirationHandler) {
    const std::lock_guard lock(mutex_);
    tasks_.emplace(++last_, Task{std::move(name), std::move(expirationHandler)});
    return last_;
}

bool BackgroundTaskRegister::end(Identifier identifier) {
    // Let go outside the lock: what the handler holds may come back here when it ends.
    decltype(tasks_)::node_type ended;
    bool isLastAwaited = false;
    {
        const std::lock_guard lock(mutex_);
        ended = tasks_.extract(identifier);
        isLastAwaited = waits_ > 0 && tasks_.empty();
    }
    if (isLastAwaited) RunLoop::main().perform([] {});
    return !ended.empty();
}

std::vector<std::string> BackgroundTaskRegister::runningNames() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    names.reserve(tasks_.size());
    for (const auto& [identifier, task] : tasks_)
        names.push_back(task.name);
    return names;
}

bool BackgroundTaskRegister::isEmpty() const {
    const std::lock_guard lock(mutex_);
    return tasks_.empty();
}

bool BackgroundTaskRegister::waitForRunning(double seconds) {
    Thread::assumeMainExecutor();
    {
        const std::lock_guard lock(mutex_);
        ++waits_;
    }
    bool isTimeUp = !(seconds > 0);
    std::shared_ptr<Timer> deadline;
    if (!isTimeUp) deadline = Timer::scheduled(seconds, false, [&isTimeUp](Timer&) { isTimeUp = true; });
    // A task that ends elsewhere after it was seen running wakes the loop.
    bool allEnded = isEmpty();
    while (!allEnded && !isTimeUp) {
        if (!RunLoop::main().runOnce()) isTimeUp = true;
        allEnded = isEmpty();
    }
    if (deadline) deadline->invalidate();
    {
        const std::lock_guard lock(mutex_);
        --waits_;
    }
    if (!allEnded) expireAll();
    return allEnded;
}

void BackgroundTaskRegister::expireAll() {
    std::vector<Identifier> left;
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [identifier, task] : tasks_)
            left.push_back(identifier);
    }
    for (const Identifier identifier : left) {
        std::function<void()> handler;
        {
            const std::lock_guard lock(mutex_);
            const auto task = tasks_.find(identifier);
            // An earlier handler may have ended it.
            if (task == tasks_.end()) continue;
            handler = std::exchange(task->second.expirationHandler, nullptr);
        }
        if (handler) handler();
        end(identifier);
    }
}

}  // namespace corvane
