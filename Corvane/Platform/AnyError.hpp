#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// A type that can stand in an `AnyError`: it says of itself at least what a developer wants to read.
///
/// Asks nothing about construction: for a class that is made from an `AnyError`, that question would be its own answer.
template <class E>
concept ErrorType = requires(const E& error) {
    { error.description() } -> std::convertible_to<std::string>;
};

/// Any error at all. Copies share the error, which is immutable, so they may be used from several threads. A
/// move is a copy: there is no empty `AnyError`.
///
/// An error type may offer `localizedDescription()`, or `errorDescription()` (text or optional text) as its
/// own user-visible text, and `domain()` with `code()`; what it does not offer is made up: the domain is the
/// type's qualified name, the code 1, and the text "The operation couldn’t be completed. (DOMAIN error N.)".
///
///     AnyError error = PlatformError("URLErrorDomain", -1009);
///     const auto* failure = error.as<PlatformError>();
///     if (failure != nullptr && failure->code() == -1009) showOffline();
class CORVANE_EXPORT AnyError {
  public:
    template <class E>
        requires(!std::same_as<std::remove_cvref_t<E>, AnyError> && ErrorType<std::remove_cvref_t<E>>)
    AnyError(E&& error)  // NOLINT(google-explicit-constructor)
        : box_(std::make_shared<const Holder<std::remove_cvref_t<E>>>(std::forward<E>(error))) {}

    AnyError(const AnyError&) noexcept = default;
    AnyError& operator=(const AnyError&) noexcept = default;
    ~AnyError() = default;

    /// What to tell a user.
    [[nodiscard]] std::string localizedDescription() const;
    [[nodiscard]] std::string domain() const;

    [[nodiscard]] std::int64_t code() const { return box_->code(); }

    /// What to tell a developer: the error's own description.
    [[nodiscard]] std::string description() const { return box_->description(); }

    /// The error itself when it is an `E`, null otherwise; it lives as long as this value or a copy of it.
    template <class E>
    [[nodiscard]] const E* as() const noexcept {
        return box_->type() == typeid(E) ? &static_cast<const Holder<E>&>(*box_).error : nullptr;
    }

  private:
    struct CORVANE_EXPORT Box {
        Box() = default;
        Box(const Box&) = delete;
        Box& operator=(const Box&) = delete;
        virtual ~Box();

        [[nodiscard]] virtual const std::type_info& type() const noexcept = 0;
        [[nodiscard]] virtual std::optional<std::string> userText() const = 0;
        [[nodiscard]] virtual std::optional<std::string> domain() const = 0;
        [[nodiscard]] virtual std::int64_t code() const = 0;
        [[nodiscard]] virtual std::string description() const = 0;
    };

    template <class E>
    struct Holder final : Box {
        explicit Holder(E value) : error(std::move(value)) {}

        const std::type_info& type() const noexcept override { return typeid(E); }

        std::optional<std::string> userText() const override {
            if constexpr (requires { error.localizedDescription(); }) {
                return error.localizedDescription();
            } else if constexpr (requires { error.errorDescription(); }) {
                return error.errorDescription();
            } else {
                return std::nullopt;
            }
        }

        std::optional<std::string> domain() const override {
            if constexpr (requires { error.domain(); }) {
                return error.domain();
            } else {
                return std::nullopt;
            }
        }

        std::int64_t code() const override {
            if constexpr (requires { error.code(); }) {
                return static_cast<std::int64_t>(error.code());
            } else {
                return 1;
            }
        }

        std::string description() const override { return std::string(error.description()); }

        E error;
    };

    std::shared_ptr<const Box> box_;
};

}  // namespace corvane
