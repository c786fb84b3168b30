// From a change in the kernel to a client's callback; runs in a network of its own, made with unshare(1).

#include <dirent.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <Corvane/Networking/API/Reachability.hpp>

#include "benchmarks/Goals.hpp"
#include "benchmarks/Limits.hpp"

namespace {

using Instant = std::chrono::steady_clock::time_point;

double nanosecondsSince(Instant start) {
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

/// The loopback link, which is up and down at our word; with it 127.0.0.1 comes and goes.
class LoopbackLink {
  public:
    LoopbackLink() { set(false); }

    ~LoopbackLink() { ::close(socket_); }

    LoopbackLink(const LoopbackLink&) = delete;
    LoopbackLink& operator=(const LoopbackLink&) = delete;

    void set(bool isUp) const {
        ifreq request{};
        std::strcpy(request.ifr_name, "lo");
        request.ifr_flags = static_cast<short>(isUp ? IFF_UP : 0);
        if (::ioctl(socket_, SIOCSIFFLAGS, &request) != 0) std::abort();
    }

  private:
    int socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

/// Changes the link for each iteration and waits until `wait` returns.
template <class Wait>
void measureChanges(benchmark::State& state, const LoopbackLink& link, Wait wait) {
    std::vector<double> times;
    bool isUp = false;
    for (auto _ : state) {
        isUp = !isUp;
        const Instant start = std::chrono::steady_clock::now();
        link.set(isUp);
        wait();
        times.push_back(nanosecondsSince(start));
    }
    state.counters["p50_ns"] = limits::percentile(times, 0.5);
    state.counters["p99_ns"] = limits::percentile(times, 0.99);
}

std::shared_ptr<corvane::Reachability> loopbackReachability() {
    return corvane::Reachability::make("127.0.0.1", {.notificationQueue = nullptr}).value();
}

void ReachabilityChange(benchmark::State& state) {
    limits::Event changed;
    const auto reachability = loopbackReachability();
    reachability->setWhenReachable([&](corvane::Reachability&) { changed.set(); });
    reachability->setWhenUnreachable([&](corvane::Reachability&) { changed.set(); });
    const LoopbackLink link;
    if (!reachability->startNotifier()) std::abort();
    changed.wait();
    measureChanges(state, link, [&] { changed.wait(); });
    reachability->stopNotifier();
}

/// No less than this is possible: a thread that waits for the announcement of the link itself.
void RawAnnouncement(benchmark::State& state) {
    limits::Event changed;
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK;
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) std::abort();
    const LoopbackLink link;
    std::atomic<bool> isDone = false;
    std::thread reader([&] {
        struct {
            nlmsghdr header;
            ifinfomsg link;
            char rest[8192];
        } message;
        // One change may be announced several times.
        for (bool wasUp = false; !isDone;) {
            if (::recv(socket, &message, sizeof message, 0) <= 0) continue;
            const bool isUp = (message.link.ifi_flags & IFF_UP) != 0;
            if (std::exchange(wasUp, isUp) != isUp) changed.set();
        }
    });
    measureChanges(state, link, [&] { changed.wait(); });
    isDone = true;
    link.set(false);
    link.set(true);
    reader.join();
    ::close(socket);
}

void CreateStartStopDestroy(benchmark::State& state) {
    for (auto _ : state) {
        const auto reachability = loopbackReachability();
        if (!reachability->startNotifier()) std::abort();
        reachability->stopNotifier();
    }
}

/// How often all threads but the first went to sleep so far, which is how often they were woken.
long sleeps() {
    long count = 0;
    DIR* const threads = ::opendir("/proc/self/task");
    while (const dirent* const thread = ::readdir(threads)) {
        const std::string name = thread->d_name;
        if (name.front() == '.' || name == std::to_string(::getpid())) continue;
        std::ifstream status("/proc/self/task/" + name + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("voluntary_ctxt_switches:")) count += std::atol(line.c_str() + 24);
        }
    }
    ::closedir(threads);
    return count;
}

/// Wake-ups while a notifier runs and the network is quiet, over a second an iteration.
void IdleNotifier(benchmark::State& state) {
    const auto reachability = loopbackReachability();
    if (!reachability->startNotifier()) std::abort();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const long before = sleeps();
    for (auto _ : state)
        std::this_thread::sleep_for(std::chrono::seconds(1));
    state.counters["wakeups"] = static_cast<double>(sleeps() - before);
}

BENCHMARK(ReachabilityChange)->Iterations(2000)->UseRealTime();
BENCHMARK(RawAnnouncement)->Iterations(2000)->UseRealTime();
BENCHMARK(CreateStartStopDestroy)->Iterations(10000)->UseRealTime();
BENCHMARK(IdleNotifier)->Iterations(5)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    constexpr const char* insideVariable = "CORVANE_BENCHMARK_NETWORK_NAMESPACE";
    if (std::getenv(insideVariable) == nullptr) {
        ::setenv(insideVariable, "1", 1);
        std::string unshare[] = {"unshare", "--map-root-user", "--net"};
        std::vector<char*> arguments = {unshare[0].data(), unshare[1].data(), unshare[2].data()};
        arguments.insert(arguments.end(), argv, argv + argc);
        arguments.push_back(nullptr);
        ::execvp(arguments.front(), arguments.data());
        std::perror("unshare");
        return EXIT_FAILURE;
    }
    return runBenchmarks(argc, argv, {});
}
