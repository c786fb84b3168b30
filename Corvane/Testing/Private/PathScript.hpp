#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <Corvane/Platform/Network/NetworkPathService.hpp>
#include <Corvane/Testing/ScriptedPath.hpp>

namespace corvane::testing {

/// What the paths of one `ScriptedPath` share.
class ScriptedPath::Script {
  public:
    template <class T>
    using Result = NetworkPath::Result<T>;

    explicit Script(NetworkFlags flags) noexcept : flags_(flags) {}

    void report(NetworkFlags flags);
    void setFlags(NetworkFlags flags);
    void refuse(Step step, std::int32_t code);
    void allow(Step step);
    void setHolding(bool holds);
    [[nodiscard]] std::vector<std::string> targets() const;
    [[nodiscard]] std::size_t installations() const;
    [[nodiscard]] std::size_t watchedPaths() const;

    // For the paths, which name themselves by their addresses.

    [[nodiscard]] Result<void> create(Step step, const std::string& target);
    [[nodiscard]] Result<void> setCallback(const void* path, std::shared_ptr<NetworkPathCallback> callback);
    [[nodiscard]] Result<void> setDispatchQueue(const void* path, std::shared_ptr<DispatchQueue> queue);
    [[nodiscard]] Result<NetworkFlags> flags() const;
    [[nodiscard]] std::shared_ptr<NetworkPathCallback> callback(const void* path) const;
    void pathEnded(const void* path);

  private:
    struct Watch {
        std::shared_ptr<NetworkPathCallback> callback;
        std::shared_ptr<DispatchQueue> queue;

        [[nodiscard]] bool isComplete() const noexcept { return callback && queue; }
    };

    struct Report {
        Watch watch;
        NetworkFlags flags;
    };

    [[nodiscard]] Result<void> check(Step step) const;
    static void send(Report report);

    mutable std::mutex mutex_;
    NetworkFlags flags_;
    std::map<Step, std::int32_t> refusals_;
    std::unordered_map<const void*, Watch> watches_;
    std::vector<std::string> targets_;
    std::size_t installations_ = 0;
    bool isHolding_ = false;
    std::vector<Report> held_;
};

}  // namespace corvane::testing
