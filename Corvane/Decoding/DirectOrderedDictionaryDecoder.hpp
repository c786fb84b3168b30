#pragma once

#include <concepts>
#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <Corvane/Decoding/OrderedDictionaryKey.hpp>
#include <Corvane/Platform/Collections/OrderedDictionary.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>

namespace corvane {

/// Reads a member that is a dictionary and keeps its entries in payload order, under typed keys:
///
///     static std::expected<Match, DecodingError> decode(const Decoder& decoder) {
///         const auto members = decoder.container();
///         if (!members) return std::unexpected(members.error());
///         auto goals = DirectOrderedDictionaryDecoder::decode<Side, int>(*members, "goals");
///         ...
///     }
///
/// How a name becomes a `Key` depends on what `Key` offers: see `OrderedDictionaryKey`. An entry whose name is no key
/// is left out without an error. Of names that become equal keys, such as "1" and "01", the first gives the place and
/// the last the value.
///
/// A value is decoded before its name is looked at: one that cannot be decoded fails the whole operation, even where
/// the name would be no key.
///
/// On the thread of the `decode` that the container belongs to.
class DirectOrderedDictionaryDecoder {
  public:
    DirectOrderedDictionaryDecoder() = delete;

    /// Fails with key-not-found when there is no such member, with value-not-found when it is null, with a type
    /// mismatch when it is no dictionary, and with the error of the first value that cannot be decoded.
    template <OrderedDictionaryKey Key, Decodable Value>
    [[nodiscard]] static std::expected<OrderedDictionary<Key, Value>, DecodingError> decode(
        const KeyedDecodingContainer& container, std::string_view key) {
        std::expected<OrderedDictionary<Key, Value>, DecodingError> dictionary;
        if (auto error = container.readMembers(key, &*dictionary, &addEntry<Key, Value>, &prepare<Key, Value>)) {
            dictionary = std::unexpected(*std::move(error));
        }
        return dictionary;
    }

    /// The same, but absent when there is no such member. Null is not absent: it fails.
    template <OrderedDictionaryKey Key, Decodable Value>
    [[nodiscard]] static std::expected<std::optional<OrderedDictionary<Key, Value>>, DecodingError> decodeIfPresent(
        const KeyedDecodingContainer& container, std::string_view key) {
        if (!container.contains(key)) return std::nullopt;
        return decode<Key, Value>(container, key);
    }

  private:
    template <class Key, class Value>
    static bool addEntry(detail::JSONCursor& cursor, void* dictionary, std::string_view name,
                         const detail::CodingStep* path) {
        auto& entries = *static_cast<OrderedDictionary<Key, Value>*>(dictionary);
        if constexpr (detail::CodedAsItIs<Value> && !std::same_as<Value, Date>) {
            Value value{};
            return cursor.read(value, path) && addValue(cursor, entries, name, std::move(value));
        } else {
            auto value = detail::readNew<Value>(cursor, path);
            if (!value) return cursor.fail(std::move(value).error());
            return addValue(cursor, entries, name, *std::move(value));
        }
    }

    template <class Key, class Value>
    static bool addValue(const detail::JSONCursor& cursor, OrderedDictionary<Key, Value>& entries,
                         std::string_view name, std::type_identity_t<Value>&& value) {
        // A text goes where it stays at once.
        if constexpr (std::same_as<Key, std::string>) {
            return addUnder(name, cursor, entries, std::move(value));
        } else {
            auto key = detail::keyNamed<Key>(detail::DynamicKey(name));
            return !key || addUnder(*std::move(key), cursor, entries, std::move(value));
        }
    }

    template <class AnyKey, class Key, class Value>
    static bool addUnder(AnyKey&& key, const detail::JSONCursor& cursor, OrderedDictionary<Key, Value>& entries,
                         std::type_identity_t<Value>&& value) {
        const auto [current, isNew] = entries.tryEmplace(std::forward<AnyKey>(key), std::move(value));
        if (isNew) return true;
        // Which of equal keys comes last is told only by an exact look: the same name may have come twice.
        if (!cursor.isExact()) return false;
        // NOLINTNEXTLINE(bugprone-use-after-move): what is not new has left it where it was.
        current = std::move(value);
        return true;
    }

    /// Empties the dictionary and makes room for as many entries as there may be, if that says anything.
    template <class Key, class Value>
    static void prepare(void* dictionary, std::size_t mostEntries) {
        auto& entries = *static_cast<OrderedDictionary<Key, Value>*>(dictionary);
        entries.clear();
        if constexpr (detail::CodedAsItIs<Value> && !std::same_as<Value, JSONValue>) entries.reserve(mostEntries);
    }
};

}  // namespace corvane
