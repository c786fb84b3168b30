#include <Corvane/Platform/Dispatch/TaskExecutor.hpp>

namespace corvane {

namespace {

/// Whether the queue lives as long as the process.
bool isImmortal(const DispatchQueue& queue) noexcept {
    return &queue == &DispatchQueue::main() || &queue == &DispatchQueue::global(queue.qos().qosClass);
}

}  // namespace

// Holding an immortal queue needs no count, which tasks on many threads would contend for.
TaskExecutor::TaskExecutor(DispatchQueue& queue) noexcept
    : queue_(isImmortal(queue) ? std::shared_ptr<DispatchQueue>(std::shared_ptr<void>(), &queue)
                               : queue.shared_from_this()) {}

}  // namespace corvane
