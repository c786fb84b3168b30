#pragma once

#include <optional>

#include <Corvane/Observation/ObservableOption.hpp>

namespace corvane {

/// How one property is observed by `KeyPathBatchObservable`.
struct KeyPathBatchObservableOptions {
    ObservableOptions events;
    /// Whether the registration replaces those the observer has on the property.
    bool removeIfExists;

    [[nodiscard]] static constexpr KeyPathBatchObservableOptions options(
        ObservableOptions reactsTo, std::optional<bool> removeIfExists = std::nullopt) noexcept {
        return {reactsTo, removeIfExists.value_or(true)};
    }

    friend constexpr bool operator==(const KeyPathBatchObservableOptions&,
                                     const KeyPathBatchObservableOptions&) noexcept = default;
};

}  // namespace corvane
