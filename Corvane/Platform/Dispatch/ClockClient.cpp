#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>

namespace corvane {

namespace {

struct Register {
    std::mutex mutex;
    std::vector<ClockClient*> clients;
};

Register& clientRegister() {
    static auto* const instance = new Register;
    return *instance;
}

constinit std::atomic<std::uint32_t> watchers = 0;
constinit std::atomic<std::uint32_t> changes = 0;

}  // namespace

void ClockClients::add(ClockClient& client) {
    Register& all = clientRegister();
    const std::lock_guard lock(all.mutex);
    all.clients.push_back(&client);
}

void ClockClients::remove(ClockClient& client) noexcept {
    Register& all = clientRegister();
    const std::lock_guard lock(all.mutex);
    std::erase(all.clients, &client);
}

void ClockClients::announceMove() noexcept {
    Register& all = clientRegister();
    const std::lock_guard lock(all.mutex);
    for (ClockClient* const client : all.clients)
        client->clockMoved();
}

ClockActivity ClockClients::scan() noexcept {
    Register& all = clientRegister();
    const std::lock_guard lock(all.mutex);
    ClockActivity sum;
    for (const ClockClient* const client : all.clients) {
        const ClockActivity one = client->activity();
        sum.nextDeadline = std::min(sum.nextDeadline, one.nextDeadline);
        sum.accepted += one.accepted;
        sum.finished += one.finished;
    }
    return sum;
}

void ClockClients::announceChange() noexcept {
    // A relaxed load is enough: whoever watches scans after it has signed on, under the lock that the change was
    // made under. Either that scan sees the change, or the lock makes the watcher visible here.
    if (watchers.load(std::memory_order_relaxed) == 0) return;
    changes.fetch_add(1, std::memory_order_acq_rel);
    changes.notify_all();
}

ClockClients::Watch::Watch() noexcept {
    watchers.fetch_add(1, std::memory_order_acq_rel);
}

ClockClients::Watch::~Watch() {
    watchers.fetch_sub(1, std::memory_order_acq_rel);
}

std::uint32_t ClockClients::Watch::ticket() const noexcept {
    return changes.load(std::memory_order_acquire);
}

void ClockClients::Watch::wait(std::uint32_t ticket) const noexcept {
    changes.wait(ticket, std::memory_order_acquire);
}

}  // namespace corvane
