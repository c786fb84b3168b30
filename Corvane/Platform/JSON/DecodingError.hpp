#pragma once

#include <string>
#include <variant>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/CodingPath.hpp>

namespace corvane {

/// Why a value could not be decoded. An `ErrorType`, so it goes into an `AnyError`.
///
///     if (const auto model = JSONDecoder().decode<Model>(body); !model)
///         log.error(model.error().description());  // "Expected an integer but found text at matches[3].id."
class CORVANE_EXPORT DecodingError {
  public:
    /// Where it went wrong, and what to tell a developer about it; the text names the path.
    struct Context {
        CodingPath codingPath;
        std::string debugDescription;

        [[nodiscard]] bool operator==(const Context&) const = default;
    };

    /// A value of another kind than expected.
    struct TypeMismatch {
        /// What was expected: "text", "an integer", "a dictionary"...
        std::string expected;
        Context context;

        [[nodiscard]] bool operator==(const TypeMismatch&) const = default;
    };

    /// Null, or the end of an array, where there has to be a value.
    struct ValueNotFound {
        std::string expected;
        Context context;

        [[nodiscard]] bool operator==(const ValueNotFound&) const = default;
    };

    /// No member under a key that has to be there. The context's path is that of the dictionary.
    struct KeyNotFound {
        CodingKey key;
        Context context;

        [[nodiscard]] bool operator==(const KeyNotFound&) const = default;
    };

    /// The document is not JSON, or a value is of the right kind but not a possible one.
    struct DataCorrupted {
        Context context;

        [[nodiscard]] bool operator==(const DataCorrupted&) const = default;
    };

    [[nodiscard]] static DecodingError typeMismatch(std::string expected, Context context);
    [[nodiscard]] static DecodingError valueNotFound(std::string expected, Context context);
    [[nodiscard]] static DecodingError keyNotFound(CodingKey key, Context context);
    [[nodiscard]] static DecodingError dataCorrupted(Context context);

    [[nodiscard]] bool isTypeMismatch() const noexcept { return is<TypeMismatch>(); }

    [[nodiscard]] bool isValueNotFound() const noexcept { return is<ValueNotFound>(); }

    [[nodiscard]] bool isKeyNotFound() const noexcept { return is<KeyNotFound>(); }

    [[nodiscard]] bool isDataCorrupted() const noexcept { return is<DataCorrupted>(); }

    /// The case with its payload, null when it is another.
    template <class Case>
    [[nodiscard]] const Case* as() const noexcept {
        return std::get_if<Case>(&case_);
    }

    [[nodiscard]] const Context& context() const noexcept;

    /// What to tell a user; the same for every case.
    [[nodiscard]] static std::string errorDescription();

    /// What to tell a developer: the context's text.
    [[nodiscard]] const std::string& description() const noexcept { return context().debugDescription; }

    [[nodiscard]] bool operator==(const DecodingError&) const = default;

  private:
    using Cases = std::variant<TypeMismatch, ValueNotFound, KeyNotFound, DataCorrupted>;

    explicit DecodingError(Cases c) : case_(std::move(c)) {}

    template <class Case>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<Case>(case_);
    }

    Cases case_;
};

}  // namespace corvane
