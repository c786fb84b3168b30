#pragma once

#include <memory>
#include <string>
#include <utility>

#include <Corvane/Networking/API/Reachability.hpp>
#include <Corvane/Platform/Network/NetworkPath.hpp>

namespace corvane {

/// What a path holds of a `Reachability`: a weak reference, so that it never keeps one alive.
class ReachabilityWeakifier final : public NetworkPathCallback {
  public:
    explicit ReachabilityWeakifier(std::weak_ptr<Reachability> of) noexcept : reachability(std::move(of)) {}

    void flagsChanged(NetworkFlags flags) override;

    /// "nil" when it is gone, else its description.
    [[nodiscard]] std::string description() const override;

    const std::weak_ptr<Reachability> reachability;
};

}  // namespace corvane
