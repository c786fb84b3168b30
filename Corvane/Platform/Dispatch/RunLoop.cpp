#include <utility>

#include <Corvane/Platform/Dispatch/Private/RunLoopImplementation.hpp>
#include <Corvane/Platform/Dispatch/Private/ThreadIdentity.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>

namespace corvane {

namespace {

/// The loop of a thread other than the first, which ends with the thread.
struct ThreadRunLoop {
    std::unique_ptr<RunLoop> loop;

    ~ThreadRunLoop() {
        // What the loop destroys may ask for the thread's loop again, and so make a new one.
        while (loop != nullptr)
            std::exchange(loop, nullptr).reset();
    }
};

}  // namespace

RunLoop::RunLoop(std::shared_ptr<Implementation> implementation) noexcept
    : implementation_(std::move(implementation)) {}

RunLoop::~RunLoop() {
    implementation_->end();
}

RunLoop& RunLoop::main() noexcept {
    static auto* const loop = new RunLoop(std::make_shared<Implementation>(mainThreadID()));
    return *loop;
}

RunLoop& RunLoop::current() {
    if (Thread::isMainThread()) return main();
    static thread_local ThreadRunLoop own;
    if (own.loop == nullptr) own.loop.reset(new RunLoop(std::make_shared<Implementation>(currentThreadID())));
    return *own.loop;
}

void RunLoop::run() {
    implementation_->requireOwnThread("run");
    implementation_->run(std::nullopt);
}

void RunLoop::runUntil(Date limit) {
    implementation_->requireOwnThread("runUntil");
    implementation_->run(limit);
}

bool RunLoop::runOnce() {
    implementation_->requireOwnThread("runOnce");
    return implementation_->runOnce();
}

bool RunLoop::drain() {
    implementation_->requireOwnThread("drain");
    return implementation_->drain();
}

void RunLoop::stop() noexcept {
    implementation_->stop();
}

int RunLoop::pollDescriptor() {
    implementation_->requireOwnThread("pollDescriptor");
    return implementation_->pollDescriptor();
}

void RunLoop::perform(Work work) {
    implementation_->perform({&work, 1});
}

}  // namespace corvane
