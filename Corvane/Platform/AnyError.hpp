#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// A type that can stand in an `AnyError`: it says of itself at least what a developer wants to read.
template <class E>
concept ErrorType = std::copy_constructible<E> && requires(const E& error) {
    { error.description() } -> std::convertible_to<std::string>;
};

/// Any error at all. Copies share the error, which is immutable, so they may be used from several threads.
///
/// An error type may offer `localizedDescription()`, or `errorDescription()` (text or optional text) as its own
/// user-visible text, and `domain()` with `code()`; what it does not offer is made up: the domain is the type's
/// name, the code 1, and the text "The operation couldn’t be completed. (DOMAIN error N.)".
class CORVANE_EXPORT AnyError {
  public:
    template <class E>
        requires(!std::same_as<std::remove_cvref_t<E>, AnyError> && ErrorType<std::remove_cvref_t<E>>)
    AnyError(E&& error);  // NOLINT(google-explicit-constructor)

    [[nodiscard]] std::string localizedDescription() const;
    [[nodiscard]] std::string domain() const;
    [[nodiscard]] std::int64_t code() const noexcept;
    [[nodiscard]] std::string description() const;

    /// The error itself when it is an `E`, null otherwise; it lives as long as this value or a copy of it.
    template <class E>
    [[nodiscard]] const E* as() const noexcept;

    // (representation follows)
};

}  // namespace corvane
