#pragma once

#include <concepts>
#include <optional>
#include <vector>

#include <Corvane/Decoding/SimpleDataProcessing.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

/// A model that any JSON dictionary makes one of.
template <class Model>
concept BuiltFromDictionary = std::constructible_from<Model, const JSONDictionary&>;

/// Gives a model that is constructed from a dictionary, which cannot fail, its `parseData` and `parseArray`:
///
///     struct Team : NSDictionaryInitialisable<Team> {
///         explicit Team(const JSONDictionary& json) : name(JSONUtils::getStringFromJSON(json, "name", "")) {}
///         std::string name;
///     };
template <class Model>
class NSDictionaryInitialisable {
  public:
    /// The model of a dictionary; absent only when that is.
    [[nodiscard]] static std::optional<Model> parseData(const std::optional<JSONDictionary>& dictionary)
        requires BuiltFromDictionary<Model>
    {
        if (!dictionary) return std::nullopt;
        return Model(*dictionary);
    }

    /// The models of an array's dictionaries, in their order; other elements are left out. Absent only when the array
    /// is.
    [[nodiscard]] static std::optional<std::vector<Model>> parseArray(const std::optional<JSONArray>& array)
        requires BuiltFromDictionary<Model>
    {
        return detail::parseModels<Model, JSONDictionary>(
            array, [](const JSONDictionary& dictionary) { return std::optional<Model>(Model(dictionary)); });
    }

    [[nodiscard]] bool operator==(const NSDictionaryInitialisable&) const noexcept = default;

  private:
    friend Model;

    NSDictionaryInitialisable() noexcept = default;
};

}  // namespace corvane
