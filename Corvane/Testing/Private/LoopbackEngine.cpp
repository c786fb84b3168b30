#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <limits>
#include <utility>

#include <Corvane/Platform/FatalError.hpp>
#include <Corvane/Testing/Private/LoopbackEngine.hpp>

namespace corvane::testing {

namespace {

// Tags of what is polled; every other one is a connection's number.
constexpr std::uint64_t wakeTag = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t listenerTag = wakeTag - 1;

}  // namespace

LoopbackEngine::LoopbackEngine()
    : poll_(::epoll_create1(EPOLL_CLOEXEC)),
      wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      port_(listener_.port()) {
    if (!poll_.isOpen() || !wakeUp_.isOpen()) fatalError("LoopbackServer gets no descriptor to wait on");
    watch(wakeUp_.get(), wakeTag, EPOLLIN, EPOLL_CTL_ADD);
    watch(listener_.descriptor(), listenerTag, EPOLLIN, EPOLL_CTL_ADD);
}

void LoopbackEngine::run() {
    while (true) {
        epoll_event events[32];
        const int count = ::epoll_wait(poll_.get(), events, std::size(events), -1);
        if (count < 0 && errno != EINTR) fatalError("LoopbackServer cannot wait for its sockets");
        for (int i = 0; i < count; ++i) {
            const std::uint64_t tag = events[i].data.u64;
            if (tag == listenerTag) {
                acceptWaiting();
            } else if (tag != wakeTag) {
                serve(tag, events[i].events);
            }
        }
        runCommands();
        const std::lock_guard lock(mutex_);
        if (isStopping_) break;
    }
    for (const auto& [number, connection] : connections_)
        log_.connectionClosed(number);
    connections_.clear();
    log_.forgetHeldExchanges();
    const std::lock_guard lock(mutex_);
    commands_.clear();
}

void LoopbackEngine::stop() {
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
        listener_.close();
    }
    wake();
}

void LoopbackEngine::perform(std::uint64_t connection, std::uint64_t exchange, Action action) {
    post([this, connection, exchange, action = std::move(action)] {
        const auto found = connections_.find(connection);
        if (found == connections_.end() || !found->second.isHolding(exchange)) return;
        action(found->second);
        settle(connection, found->second);
    });
}

void LoopbackEngine::closeIdleConnections() {
    post([this] {
        std::vector<std::uint64_t> idle;
        for (const auto& [number, connection] : connections_) {
            if (connection.isKept()) idle.push_back(number);
        }
        for (const std::uint64_t number : idle) {
            LoopbackConnection& connection = connections_.at(number);
            connection.closeInOrder();
            settle(number, connection);
        }
    });
}

void LoopbackEngine::failNextConnection(LoopbackFault fault) {
    const std::lock_guard lock(mutex_);
    faults_.push_back(fault);
}

void LoopbackEngine::setListening(bool isListening) {
    // Under the lock, so that the loop never accepts from a descriptor that is just being closed.
    const std::lock_guard lock(mutex_);
    if (isStopping_ || isListening == (listener_.descriptor() >= 0)) return;
    if (isListening) {
        listener_.open();
        watch(listener_.descriptor(), listenerTag, EPOLLIN, EPOLL_CTL_ADD);
    } else {
        listener_.close();
    }
}

LoopbackResponse LoopbackEngine::answer(const LoopbackRequest& request, std::uint64_t exchange) {
    log_.requestArrived(request);
    LoopbackResponse response = routes_.answer(request);
    if (response.isHeld) log_.exchangeHeld(LoopbackExchange(shared_from_this(), request, exchange));
    return response;
}

void LoopbackEngine::post(std::function<void()> command) {
    {
        const std::lock_guard lock(mutex_);
        if (isStopping_) return;
        commands_.push_back(std::move(command));
    }
    wake();
}

void LoopbackEngine::wake() noexcept {
    ::eventfd_write(wakeUp_.get(), 1);
}

void LoopbackEngine::watch(int descriptor, std::uint64_t tag, std::uint32_t interest, int operation) noexcept {
    epoll_event event{.events = interest, .data = {.u64 = tag}};
    ::epoll_ctl(poll_.get(), operation, descriptor, &event);
}

void LoopbackEngine::acceptWaiting() {
    while (true) {
        FileDescriptor socket;
        LoopbackFault fault = LoopbackFault::none;
        {
            const std::lock_guard lock(mutex_);
            socket = listener_.accept();
            if (!socket.isOpen()) return;
            if (!faults_.empty()) {
                fault = faults_.front();
                faults_.pop_front();
            }
        }
        const std::uint64_t number = ++lastConnection_;
        log_.connectionOpened(number);
        watch(socket.get(), number, EPOLLIN, EPOLL_CTL_ADD);
        const auto [added, isNew] =
            connections_.try_emplace(number, std::move(socket), number, fault, static_cast<Host&>(*this));
        settle(number, added->second);
    }
}

void LoopbackEngine::runCommands() {
    eventfd_t wakeUps = 0;
    ::eventfd_read(wakeUp_.get(), &wakeUps);
    std::vector<std::function<void()>> commands;
    {
        const std::lock_guard lock(mutex_);
        commands.swap(commands_);
    }
    for (const auto& command : commands)
        command();
}

void LoopbackEngine::serve(std::uint64_t number, std::uint32_t events) {
    const auto found = connections_.find(number);
    if (found == connections_.end()) return;
    LoopbackConnection& connection = found->second;
    if ((events & (EPOLLIN | EPOLLHUP | EPOLLERR)) != 0) connection.becameReadable();
    if ((events & EPOLLOUT) != 0 && !connection.isOver()) connection.becameWritable();
    settle(number, connection);
}

void LoopbackEngine::settle(std::uint64_t number, LoopbackConnection& connection) {
    if (connection.isOver()) {
        connections_.erase(number);
        log_.connectionClosed(number);
    } else {
        watch(connection.descriptor(), number, connection.interest(), EPOLL_CTL_MOD);
    }
}

}  // namespace corvane::testing
