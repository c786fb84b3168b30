#pragma once

#include <string>

/// A network of the test's own: a namespace with nothing but a loopback link that is down, where the test may do as
/// root does. Made with unshare of util-linux, changed with ip of iproute2.
///
///     TEST(NetworkPath, LosesItsRoute) {
///         if (!NetworkNamespace::enter()) return;
///         NetworkNamespace::ip("link set lo up");
class NetworkNamespace {
  public:
    NetworkNamespace() = delete;

    /// True in a process that has such a network. Elsewhere it runs the current test again in one that has, fails if
    /// that fails, and returns false. Where namespaces are not permitted the test is skipped, or fails under CI.
    [[nodiscard]] static bool enter();

    /// Runs "ip" with these arguments and fails the test if it fails.
    static void ip(const std::string& arguments);

    /// Runs many commands of "ip", a line each, by one process.
    static void ipBatch(const std::string& commands);
};
