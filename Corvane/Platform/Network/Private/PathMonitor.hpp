#pragma once

#include <memory>
#include <mutex>
#include <unordered_map>

#include <Corvane/Platform/Network/NetworkPath.hpp>

namespace corvane::network {

class KernelPath;

/// Listens to the kernel's announcements and pokes all watched paths when something has changed.
///
/// One socket and one thread, which sleeps in the kernel until there is an announcement; both are made with the first
/// watched path and kept. While no path is watched the socket is subscribed to nothing. What an announcement says is
/// of no interest but for its kind: paths look for themselves, which makes lost ones (ENOBUFS) as good as received.
class PathMonitor {
  public:
    /// The process's monitor, never destroyed.
    [[nodiscard]] static PathMonitor& shared();

    /// `receiveBytes` is the size of the socket's buffer, 0 for the system's choice. A monitor that has had a path
    /// must not be destroyed.
    explicit PathMonitor(int receiveBytes = 0) noexcept : receiveBytes_(receiveBytes) {}

    /// From here on the path is poked, until it is removed.
    [[nodiscard]] NetworkPath::Result<void> add(KernelPath& path);
    void remove(const KernelPath& path) noexcept;

  private:
    [[nodiscard]] NetworkPath::Result<void> open();
    void subscribe(int option) noexcept;
    void run(int socket);
    /// Listens again after the socket was lost, now or as soon as there is a descriptor.
    void recover();
    void pokeAll();

    const int receiveBytes_;
    std::mutex mutex_;
    int socket_ = -1;
    std::unordered_map<const KernelPath*, std::weak_ptr<KernelPath>> paths_;
};

}  // namespace corvane::network
