#pragma once

#include <expected>
#include <memory>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Network/NetworkFlags.hpp>
#include <Corvane/Platform/Network/NetworkPathError.hpp>
#include <Corvane/Platform/Network/SocketAddress.hpp>

namespace corvane {

/// Hears of changes of a path that it was given to. The path holds it until another one takes its place or the path
/// ends, so it should hold nothing that holds the path.
class CORVANE_EXPORT NetworkPathCallback {
  public:
    virtual ~NetworkPathCallback();
    NetworkPathCallback(const NetworkPathCallback&) = delete;
    NetworkPathCallback& operator=(const NetworkPathCallback&) = delete;

    /// The flags as they are now. Called on the path's queue; may do anything to the path, ending it included.
    virtual void flagsChanged(NetworkFlags flags) = 0;

    /// Says who this is, for the path's description. May be called on any thread.
    [[nodiscard]] virtual std::string description() const = 0;

  protected:
    NetworkPathCallback() = default;
};

/// The way from this machine to a target, as the kernel would send a packet there now: the route, the link it leads
/// over and the address it leaves from. Nothing is sent to find out, so "reachable" does not mean that the target
/// answers.
///
/// The target is a host name, an address, or the zero address for the general internet. Host names are looked up on
/// a thread of their own, at first and again after each change of the network while the path is watched (has a
/// callback and a queue); until that has an answer, and when it has none, the flags are empty. A look-up that hangs
/// delays nobody, the end of the path included. A temporary failure of a watched path's look-up is tried again after
/// 1, 2, 4... 64 seconds on the clock in force while there is a way to the internet.
///
/// Changes are reported while a callback and a queue are set. A change is a hint to look: at the time of the call
/// the kernel is asked, and nothing is reported when the flags are those reported before. So a burst of changes
/// may be one call, but its last state is always reported. Nothing wakes up while the network does not change.
///
/// All operations may be called on any thread and inside the callback. Clearing callback or queue and ending the
/// path wait for nothing: a call that has begun on another thread goes on.
class CORVANE_EXPORT NetworkPath {
  public:
    template <class T>
    using Result = std::expected<T, NetworkPathError>;

    /// The path to a host, from the service in force. Fails for a name that is empty, holds a zero byte or is longer
    /// than 253 bytes, and when the kernel cannot be asked (no descriptor, no permission).
    [[nodiscard]] static Result<std::shared_ptr<NetworkPath>> make(std::string_view hostName);

    /// The path to an address, whose port does not matter.
    [[nodiscard]] static Result<std::shared_ptr<NetworkPath>> make(const SocketAddress& address);

    virtual ~NetworkPath();
    NetworkPath(const NetworkPath&) = delete;
    NetworkPath& operator=(const NetworkPath&) = delete;

    /// Sets who hears of changes; null for nobody, which cannot fail.
    virtual Result<void> setCallback(std::shared_ptr<NetworkPathCallback> callback) = 0;

    /// Sets the queue on which changes are reported, one at a time; null for none, which cannot fail. Fails when the
    /// kernel's announcements cannot be had.
    virtual Result<void> setDispatchQueue(std::shared_ptr<DispatchQueue> queue) = 0;

    /// Asks the kernel, which takes microseconds.
    [[nodiscard]] virtual Result<NetworkFlags> flags() = 0;

    /// The target and the callback's description.
    [[nodiscard]] virtual std::string description() const = 0;

  protected:
    NetworkPath() = default;
};

}  // namespace corvane
