#pragma once

#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include <Corvane/Decoding/DynamicKey.hpp>
#include <Corvane/Decoding/OrderedDictionaryKey.hpp>
#include <Corvane/Platform/Collections/OrderedDictionary.hpp>

namespace corvane {

/// A dictionary's values under typed keys, by the rules of `DirectOrderedDictionaryDecoder`: entries whose name is no
/// `Key` are left out, and of names that become equal keys the first gives the place and the last the value.
///
///     const auto names = convertKeys<std::int64_t>(teams);  // {"12": "Rovers", "?": "-"} gives {12: "Rovers"}
///
/// Takes a `JSONDictionary` and the dictionaries of Corvane and of the standard library that have text keys.
template <OrderedDictionaryKey Key, class Dictionary>
[[nodiscard]] auto convertKeys(const Dictionary& dictionary) {
    const auto valueOf = [](const auto& entry) {
        const auto& [name, value] = entry;
        return value;
    };
    OrderedDictionary<Key, decltype(valueOf(*std::begin(dictionary)))> converted;
    for (const auto& [name, value] : dictionary) {
        if (auto key = detail::keyNamed<Key>(detail::DynamicKey(std::string_view(name)))) {
            converted.set(*std::move(key), value);
        }
    }
    return converted;
}

}  // namespace corvane
