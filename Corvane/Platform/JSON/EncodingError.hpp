#pragma once

#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/CodingPath.hpp>

namespace corvane {

/// Why a value could not be encoded: JSON cannot express it. An `ErrorType`, so it goes into an `AnyError`.
class CORVANE_EXPORT EncodingError {
  public:
    /// Where the value stands, and what to tell a developer about it; the text names the path.
    struct Context {
        CodingPath codingPath;
        std::string debugDescription;

        [[nodiscard]] bool operator==(const Context&) const = default;
    };

    /// A number that is not finite, text that is not UTF-8, values nested too deeply, or a type whose own rules
    /// wrote no value or more than one.
    [[nodiscard]] static EncodingError invalidValue(Context context) { return EncodingError(std::move(context)); }

    [[nodiscard]] const Context& context() const noexcept { return context_; }

    /// What to tell a developer: the context's text.
    [[nodiscard]] const std::string& description() const noexcept { return context_.debugDescription; }

    [[nodiscard]] bool operator==(const EncodingError&) const = default;

  private:
    explicit EncodingError(Context context) : context_(std::move(context)) {}

    Context context_;
};

}  // namespace corvane
