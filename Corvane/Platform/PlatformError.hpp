#pragma once

#include <cstdint>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// A failure reported by the platform's services: a domain and a code within it. Two are equal when domain
/// and code are.
class CORVANE_EXPORT PlatformError {
  public:
    PlatformError(std::string domain, std::int64_t code, std::string text = {});

    [[nodiscard]] const std::string& domain() const noexcept { return domain_; }

    [[nodiscard]] std::int64_t code() const noexcept { return code_; }

    /// What to tell a user: the error's own text or, without one, "The operation couldn’t be completed.
    /// (DOMAIN error N.)".
    [[nodiscard]] std::string localizedDescription() const;

    /// What to tell a developer: "Error Domain=… Code=…", followed by the own text in quotes where there is
    /// one.
    [[nodiscard]] std::string description() const;

    friend bool operator==(const PlatformError& a, const PlatformError& b) noexcept {
        return a.code_ == b.code_ && a.domain_ == b.domain_;
    }

  private:
    std::string domain_;
    std::int64_t code_;
    std::string text_;
};

}  // namespace corvane
