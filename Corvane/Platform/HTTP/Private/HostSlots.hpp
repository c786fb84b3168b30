#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace corvane::http {

/// Decides which of a session's requests may be on the wire: so many to one origin at once, the others wait
/// in the order of their priority, equal ones in the order they came. `Entry` is a pointer to a request. Not
/// thread-safe.
template <class Entry>
class HostSlots {
  public:
    explicit HostSlots(std::size_t limit) noexcept : limit_(std::max<std::size_t>(limit, 1)) {}

    /// Takes a slot; without a free one the entry waits and false is given.
    bool acquire(const std::string& origin, float priority, const Entry& entry) {
        Host& host = hosts_[origin];
        if (host.active < limitOf(host)) {
            ++host.active;
            return true;
        }
        host.places.emplace(entry, host.waiting.emplace(priority, entry));
        return false;
    }

    /// Gives a slot back. The entry that has it now, null when nobody waited.
    Entry release(const std::string& origin) {
        const auto found = hosts_.find(origin);
        if (found == hosts_.end()) return nullptr;
        Host& host = found->second;
        --host.active;
        if (!host.waiting.empty() && host.active < limitOf(host)) return admit(host);
        // What is known of an origin outlives its requests only when it is more than a count.
        if (host.active == 0 && !host.isMultiplexed) hosts_.erase(found);
        return nullptr;
    }

    /// Takes an entry out that waits.
    void withdraw(const std::string& origin, const Entry& entry) {
        const auto found = hosts_.find(origin);
        if (found == hosts_.end()) return;
        Host& host = found->second;
        const auto place = host.places.find(entry);
        if (place == host.places.end()) return;
        host.waiting.erase(place->second);
        host.places.erase(place);
    }

    /// Notes whether one connection to the origin carries many requests, which raises the limit. Those who have slots
    /// now because of it.
    std::vector<Entry> setMultiplexed(const std::string& origin, bool isMultiplexed) {
        std::vector<Entry> admitted;
        const auto found = hosts_.find(origin);
        if (found == hosts_.end()) return admitted;
        Host& host = found->second;
        host.isMultiplexed = isMultiplexed;
        while (host.active < limitOf(host) && !host.waiting.empty())
            admitted.push_back(admit(host));
        return admitted;
    }

  private:
    /// As many as servers usually allow on one connection (RFC 9113, 6.5.2, recommends no less).
    static constexpr std::size_t multiplexedLimit = 100;

    /// Equal priorities stay in the order they came.
    using Waiting = std::multimap<float, Entry, std::greater<>>;

    struct Host {
        std::size_t active = 0;
        bool isMultiplexed = false;
        Waiting waiting;
        /// Thousands may wait, and withdraw at once: none is searched for.
        std::unordered_map<Entry, typename Waiting::iterator> places;
    };

    static Entry admit(Host& host) {
        ++host.active;
        Entry next = std::move(host.waiting.begin()->second);
        host.waiting.erase(host.waiting.begin());
        host.places.erase(next);
        return next;
    }

    [[nodiscard]] std::size_t limitOf(const Host& host) const noexcept {
        return host.isMultiplexed ? std::max(limit_, multiplexedLimit) : limit_;
    }

    std::size_t limit_;
    std::unordered_map<std::string, Host> hosts_;
};

}  // namespace corvane::http
