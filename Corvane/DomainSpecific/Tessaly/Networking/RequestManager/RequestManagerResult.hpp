#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiDataProviderFailureReason.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/JSONDictionary.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

/// What a request through the `RequestManager` came to. Two are equal when case and payload are.
class CORVANE_EXPORT RequestManagerResult {
  public:
    struct Success {
        JSONDictionary json;
        /// The back end's validator, byte for byte.
        std::optional<std::string> lastModified;
        friend bool operator==(const Success&, const Success&) = default;
    };

    struct Failure {
        ApiDataProviderFailureReason reason;
        friend bool operator==(const Failure&, const Failure&) = default;
    };

    struct NotModified {
        friend bool operator==(NotModified, NotModified) = default;
    };

    [[nodiscard]] static RequestManagerResult success(JSONDictionary json, std::optional<std::string> lastModified) {
        return RequestManagerResult(Success{std::move(json), std::move(lastModified)});
    }

    [[nodiscard]] static RequestManagerResult failure(ApiDataProviderFailureReason reason) {
        return RequestManagerResult(Failure{std::move(reason)});
    }

    /// The caller's copy is still good.
    [[nodiscard]] static RequestManagerResult notModified() { return RequestManagerResult(NotModified{}); }

    [[nodiscard]] bool isSuccess() const noexcept { return asSuccess() != nullptr; }

    [[nodiscard]] bool isFailure() const noexcept { return asFailure() != nullptr; }

    [[nodiscard]] bool isNotModified() const noexcept { return std::holds_alternative<NotModified>(case_); }

    /// The payloads, null for the other cases.
    [[nodiscard]] const Success* asSuccess() const noexcept { return std::get_if<Success>(&case_); }

    [[nodiscard]] const Failure* asFailure() const noexcept { return std::get_if<Failure>(&case_); }

    /// What to tell a developer: the case's name with its payload.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const RequestManagerResult&, const RequestManagerResult&) = default;

  private:
    using Case = std::variant<Success, Failure, NotModified>;

    explicit RequestManagerResult(Case result) noexcept : case_(std::move(result)) {}

    Case case_;
};

}  // namespace corvane
