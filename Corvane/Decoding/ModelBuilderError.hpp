#pragma once

#include <optional>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// Why a model could not be built from its input.
class CORVANE_EXPORT ModelBuilderError {
  public:
    /// There is no input, or a part of it is missing.
    [[nodiscard]] static constexpr ModelBuilderError lackOfInputData() noexcept {
        return ModelBuilderError(Case::lackOfInputData);
    }

    /// A required property is missing or of an unknown format.
    [[nodiscard]] static constexpr ModelBuilderError brokenData() noexcept {
        return ModelBuilderError(Case::brokenData);
    }

    /// Nothing came of it; better than an absent model.
    [[nodiscard]] static constexpr ModelBuilderError emptyResult() noexcept {
        return ModelBuilderError(Case::emptyResult);
    }

    [[nodiscard]] constexpr bool isLackOfInputData() const noexcept { return case_ == Case::lackOfInputData; }

    [[nodiscard]] constexpr bool isBrokenData() const noexcept { return case_ == Case::brokenData; }

    [[nodiscard]] constexpr bool isEmptyResult() const noexcept { return case_ == Case::emptyResult; }

    /// What to tell a user, in the language of the application's catalogue (`localizedString`) or in English; never
    /// absent.
    [[nodiscard]] std::optional<std::string> errorDescription() const;

    /// What to tell a developer: the name of the case.
    [[nodiscard]] std::string description() const;

    [[nodiscard]] constexpr bool operator==(const ModelBuilderError&) const noexcept = default;

  private:
    enum class Case : unsigned char { lackOfInputData, brokenData, emptyResult };

    explicit constexpr ModelBuilderError(Case c) noexcept : case_(c) {}

    Case case_;
};

}  // namespace corvane
