#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <Corvane/Platform/Network/SocketAddress.hpp>

namespace corvane::network {

struct HostAnswer {
    /// Best first (RFC 6724); none when the name has none or could not be looked up.
    std::vector<SocketAddress> addresses;
    /// Whether asking again later may help.
    bool isTemporaryFailure = false;
};

class HostLookupClient {
  public:
    virtual ~HostLookupClient() = default;
    /// On the look-up's thread.
    virtual void hostLookedUp(HostAnswer answer) = 0;
};

/// Looks host names up with the system's resolver, each on a thread of its own, as the resolver may hang for as long
/// as it likes. A name that is asked for again meanwhile is looked up anew afterwards, on the same thread. Any thread.
class HostLookups {
  public:
    /// Never destroyed: look-ups may hang when static destructors run.
    [[nodiscard]] static HostLookups& shared();

    /// Looks up and tells the client once, unless it is gone by then.
    void lookUp(const std::string& name, std::weak_ptr<HostLookupClient> client);

  private:
    HostLookups() = default;

    void run(const std::string& name);

    std::mutex mutex_;
    /// Who waits for the next round, by the names that have a thread.
    std::unordered_map<std::string, std::vector<std::weak_ptr<HostLookupClient>>> waiting_;
};

}  // namespace corvane::network
