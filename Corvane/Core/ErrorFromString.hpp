#pragma once

#include <string>

#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// An error made from a message and the place where it was made. An `ErrorType`, so it goes into an
/// `AnyError`.
class CORVANE_EXPORT ErrorFromString {
  public:
    explicit ErrorFromString(std::string value, SourceFileContext context = SourceFileContext::current());

    /// The message the error was made from.
    [[nodiscard]] const std::string& value() const noexcept { return value_; }

    /// What to tell a user: the message.
    [[nodiscard]] const std::string& errorDescription() const noexcept { return value_; }

    /// What to tell a developer: "<message)> declared from: load(), in Loader.cpp, at line: 42".
    [[nodiscard]] const std::string& debugDescription() const noexcept { return debugDescription_; }

    [[nodiscard]] const std::string& description() const noexcept { return debugDescription_; }

    friend bool operator==(const ErrorFromString&, const ErrorFromString&) = default;

  private:
    std::string value_;
    std::string debugDescription_;
};

/// Makes an error from a message and the place of the call.
[[nodiscard]] CORVANE_EXPORT ErrorFromString errorFromString(std::string value,
                                                             SourceFileContext context = SourceFileContext::current());

}  // namespace corvane
