#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Network/SocketAddress.hpp>

namespace corvane {

/// Why a `Reachability` could not be made or started, with the platform's last error number from right after the
/// failure. Two are equal when case and payload are.
class CORVANE_EXPORT ReachabilityError {
  public:
    struct FailedToCreateWithAddress {
        SocketAddress address;
        std::int32_t code;
        friend bool operator==(const FailedToCreateWithAddress&, const FailedToCreateWithAddress&) = default;
    };

    struct FailedToCreateWithHostname {
        std::string hostname;
        std::int32_t code;
        friend bool operator==(const FailedToCreateWithHostname&, const FailedToCreateWithHostname&) = default;
    };

    struct UnableToSetCallback {
        std::int32_t code;
        friend bool operator==(UnableToSetCallback, UnableToSetCallback) = default;
    };

    struct UnableToSetDispatchQueue {
        std::int32_t code;
        friend bool operator==(UnableToSetDispatchQueue, UnableToSetDispatchQueue) = default;
    };

    struct UnableToGetFlags {
        std::int32_t code;
        friend bool operator==(UnableToGetFlags, UnableToGetFlags) = default;
    };

    [[nodiscard]] static ReachabilityError failedToCreateWithAddress(SocketAddress address, std::int32_t code) {
        return ReachabilityError(FailedToCreateWithAddress{address, code});
    }

    [[nodiscard]] static ReachabilityError failedToCreateWithHostname(std::string hostname, std::int32_t code) {
        return ReachabilityError(FailedToCreateWithHostname{std::move(hostname), code});
    }

    [[nodiscard]] static ReachabilityError unableToSetCallback(std::int32_t code) {
        return ReachabilityError(UnableToSetCallback{code});
    }

    [[nodiscard]] static ReachabilityError unableToSetDispatchQueue(std::int32_t code) {
        return ReachabilityError(UnableToSetDispatchQueue{code});
    }

    [[nodiscard]] static ReachabilityError unableToGetFlags(std::int32_t code) {
        return ReachabilityError(UnableToGetFlags{code});
    }

    [[nodiscard]] bool isFailedToCreateWithAddress() const noexcept { return asFailedToCreateWithAddress() != nullptr; }

    [[nodiscard]] bool isFailedToCreateWithHostname() const noexcept {
        return asFailedToCreateWithHostname() != nullptr;
    }

    [[nodiscard]] bool isUnableToSetCallback() const noexcept { return is<UnableToSetCallback>(); }

    [[nodiscard]] bool isUnableToSetDispatchQueue() const noexcept { return is<UnableToSetDispatchQueue>(); }

    [[nodiscard]] bool isUnableToGetFlags() const noexcept { return is<UnableToGetFlags>(); }

    /// The payload of the case, null for every other one.
    [[nodiscard]] const FailedToCreateWithAddress* asFailedToCreateWithAddress() const noexcept {
        return std::get_if<FailedToCreateWithAddress>(&case_);
    }

    [[nodiscard]] const FailedToCreateWithHostname* asFailedToCreateWithHostname() const noexcept {
        return std::get_if<FailedToCreateWithHostname>(&case_);
    }

    /// The platform's error number, which every case has.
    [[nodiscard]] std::int32_t code() const noexcept {
        return std::visit([](const auto& payload) { return payload.code; }, case_);
    }

    /// What to tell a developer: `failedToCreateWithHostname("example.com", 22)`.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const ReachabilityError&, const ReachabilityError&) = default;

  private:
    using Case = std::variant<FailedToCreateWithAddress, FailedToCreateWithHostname, UnableToSetCallback,
                              UnableToSetDispatchQueue, UnableToGetFlags>;

    explicit ReachabilityError(Case failure) noexcept : case_(std::move(failure)) {}

    template <class T>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<T>(case_);
    }

    Case case_;
};

}  // namespace corvane
