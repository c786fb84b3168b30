#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

/// What a model may be built from: any JSON value, or one of a certain kind.
template <class T>
concept ModelInput = std::same_as<T, JSONValue> || std::same_as<T, JSONDictionary> || std::same_as<T, JSONArray> ||
                     std::same_as<T, JSONNumber> || std::same_as<T, std::string>;

/// A model that may be built from an `Input`: `static std::optional<Model> fromInput(const Input&)`, absent when the
/// input is no such model.
template <class Model, class Input>
concept BuiltFromInput = ModelInput<Input> && requires(const Input& input) {
    { Model::fromInput(input) } -> std::same_as<std::optional<Model>>;
};

namespace detail {

/// The value as an `Input`, absent when it is of another kind.
template <ModelInput Input>
std::optional<Input> modelInput(const JSONValue& value) {
    [[maybe_unused]] const auto copied = [](const auto* content) {
        return content ? std::optional<Input>(*content) : std::nullopt;
    };
    if constexpr (std::same_as<Input, JSONDictionary>) {
        return copied(value.asDictionary());
    } else if constexpr (std::same_as<Input, JSONArray>) {
        return copied(value.asArray());
    } else if constexpr (std::same_as<Input, JSONNumber>) {
        return value.asNumber();
    } else if constexpr (std::same_as<Input, std::string>) {
        const auto text = value.asString();
        return text ? std::optional<std::string>(*text) : std::nullopt;
    } else {
        return value;
    }
}

/// The models that `build` makes of an array's elements; those that are no `Input`, or of which it makes none, are left
/// out.
template <class Model, ModelInput Input>
std::optional<std::vector<Model>> parseModels(const std::optional<JSONArray>& array, auto build) {
    if (!array) return std::nullopt;
    std::vector<Model> models;
    for (const JSONValue& element : *array) {
        const std::optional<Input> input = modelInput<Input>(element);
        if (!input) continue;
        if (std::optional<Model> model = build(*input)) models.push_back(*std::move(model));
    }
    return models;
}

}  // namespace detail

/// Gives a model its `parseArray`, when it can be built from one `Input` and says so:
///
///     struct Team : SimpleDataProcessing<Team> {
///         static std::optional<Team> fromInput(const JSONDictionary& json);
///         ...
///     };
///
///     const auto teams = Team::parseArray(JSONUtils::getArrayFromJSON(json, "teams"));
template <class Model, ModelInput Input = JSONDictionary>
class SimpleDataProcessing {
  public:
    /// The models of an array's elements, in their order; elements that are no such model are left out. Absent only
    /// when the array is.
    [[nodiscard]] static std::optional<std::vector<Model>> parseArray(const std::optional<JSONArray>& array)
        requires BuiltFromInput<Model, Input>
    {
        return detail::parseModels<Model, Input>(array, [](const Input& input) { return Model::fromInput(input); });
    }

    [[nodiscard]] bool operator==(const SimpleDataProcessing&) const noexcept = default;

  private:
    friend Model;

    SimpleDataProcessing() noexcept = default;
};

}  // namespace corvane
