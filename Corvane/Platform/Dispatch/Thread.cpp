#include <Corvane/Platform/Dispatch/Private/ThreadIdentity.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

bool Thread::isMainThread() noexcept {
    return currentThreadID() == mainThreadID();
}

void Thread::assumeMainExecutor(std::source_location where) {
    if (isMainThread()) return;
    fatalError("Incorrect actor executor assumption; Expected same executor as the main executor", where);
}

}  // namespace corvane
