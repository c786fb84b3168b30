#include <Corvane/Platform/Dispatch/Private/ThreadIdentity.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

bool Thread::isMainThread() noexcept {
    return currentThreadID() == mainThreadID();
}

void Thread::assumeMainExecutor(std::source_location where) {
    if (isMainThread()) {
        // A task of another executor may run here all the same: a serial queue's whose target is the main queue.
        const TaskContext* const task = TaskContext::current();
        if (task == nullptr || &task->executor().queue() == &DispatchQueue::main()) return;
    }
    fatalError("Incorrect actor executor assumption; Expected same executor as the main executor", where);
}

}  // namespace corvane
