#pragma once

#include <concepts>
#include <optional>
#include <vector>

namespace corvane {

/// What code that is written over any tagged value can rely on: the wrapped type, `ValueType`, and read access to
/// `value()`.
template <class T>
concept AnyTaggedType = requires(const T& tagged) {
    typename T::ValueType;
    { tagged.value() } -> std::same_as<const typename T::ValueType&>;
};

/// A collection of tagged values.
template <class T>
concept TaggedCollection = AnyTaggedType<typename T::value_type> && requires(const T& collection) {
    collection.begin();
    collection.end();
};

/// The wrapped values, in the order of the collection.
template <TaggedCollection Collection>
[[nodiscard]] constexpr auto values(const Collection& collection) {
    std::vector<typename Collection::value_type::ValueType> result;
    if constexpr (requires { collection.size(); }) result.reserve(collection.size());
    for (const auto& tagged : collection)
        result.push_back(tagged.value());
    return result;
}

/// The same for a collection that may be absent; absent for absent.
template <TaggedCollection Collection>
[[nodiscard]] constexpr auto values(const std::optional<Collection>& collection) {
    using Values = decltype(values(*collection));
    return collection ? std::optional<Values>(values(*collection)) : std::nullopt;
}

}  // namespace corvane
