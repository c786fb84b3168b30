#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Network/NetworkFlags.hpp>

namespace corvane {
class NetworkPathService;
}

namespace corvane::testing {

/// A network that does as it is told. While it lives, every `NetworkPath` that is made, by a `Reachability` or by a
/// session that waits for connectivity, leads through it: flags are what the script says, for all targets alike.
///
///     ScriptedPath network;
///     const auto reachability = Reachability::make().value();
///     reachability->startNotifier();
///     network.report({});  // the connection is lost
///
/// One that overlaps another must end before it. Paths outlive it with their last flags and report nothing any more.
/// All operations may be called on any thread.
class CORVANE_EXPORT ScriptedPath {
  public:
    enum class Step : unsigned char {
        createWithAddress,
        createWithHostName,
        setCallback,
        setDispatchQueue,
        readFlags,
    };

    /// The network starts with these flags.
    explicit ScriptedPath(NetworkFlags flags = NetworkFlag::reachable);
    ~ScriptedPath();
    ScriptedPath(const ScriptedPath&) = delete;
    ScriptedPath& operator=(const ScriptedPath&) = delete;

    /// Changes the flags, and reports them to every path that has a callback and a queue, once for each call even if
    /// they are the same. As on a real network, a report that is on its way arrives even when the callback is cleared
    /// or the path ended meanwhile.
    void report(NetworkFlags flags);

    /// Changes the flags without a report.
    void setFlags(NetworkFlags flags);

    /// From here on the step fails with `code`; clearing a callback or a queue never does.
    void refuse(Step step, std::int32_t code);
    void allow(Step step);

    /// Keeps reports back from here on.
    void holdReports();

    /// Sends the reports that were kept back on their way, to the callbacks and queues that they were for, and keeps
    /// back no more.
    void releaseReports();

    /// The targets of the paths made so far: host names, and addresses as `SocketAddress::description` has them.
    [[nodiscard]] std::vector<std::string> targets() const;

    /// How often a callback was set so far, not counting those that cleared it or were refused.
    [[nodiscard]] std::size_t installations() const;

    /// How many paths have a callback and a queue now.
    [[nodiscard]] std::size_t watchedPaths() const;

    class Script;

  private:
    std::shared_ptr<Script> script_;
    std::shared_ptr<NetworkPathService> former_;
};

}  // namespace corvane::testing
