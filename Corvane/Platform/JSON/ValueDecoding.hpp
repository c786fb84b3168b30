#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <memory>
#include <tuple>

#include <Corvane/Platform/JSON/CodingTraits.hpp>
#include <Corvane/Platform/JSON/Decoder.hpp>
#include <Corvane/Platform/JSON/KeyedDecodingContainer.hpp>
#include <Corvane/Platform/JSON/RawValues.hpp>
#include <Corvane/Platform/JSON/UnkeyedDecodingContainer.hpp>

// How each kind of type is read from a cursor. On failure the cursor has the reason.

namespace corvane::detail {

template <class T>
bool readValue(JSONCursor& cursor, T& value, const CodingStep* path);

template <class T>
    requires HasDecodingCoding<T> || HasOwnDecoding<T>
std::expected<T, DecodingError> readSelfDecoded(JSONCursor& cursor, const CodingStep* path) {
    const JSONCursor::ExactScope scope(cursor);
    const std::uint32_t start = cursor.position();
    auto value = [&] {
        if constexpr (HasDecodingCoding<T>) {
            return Coding<T>::decode(Decoder(cursor, path));
        } else {
            return T::decode(Decoder(cursor, path));
        }
    }();
    if (!value) return value;
    cursor.moveTo(start);
    if (!cursor.skip()) return std::unexpected(cursor.takeError());
    return value;
}

/// Whether a `T` stands for a whole array or dictionary of a document.
template <class T>
constexpr bool holdsOthers() {
    if constexpr (isOptional<T>) {
        return holdsOthers<typename T::value_type>();
    } else {
        return isVector<T> || CodedDictionary<T> || CodedAggregate<T>;
    }
}

template <class T>
std::expected<T, DecodingError> readNew(JSONCursor& cursor, const CodingStep* path) {
    if constexpr (HasDecodingCoding<T> || HasOwnDecoding<T>) {
        return readSelfDecoded<T>(cursor, path);
    } else {
        static_assert(std::default_initializable<T>, "a type without a default has to decode itself");
        using Result = std::expected<T, DecodingError>;
        if constexpr (holdsOthers<T>()) {
            if (cursor.isExact()) {
                Result attempt(std::in_place);
                if (cursor.readInGoodFaith([&] { return readValue(cursor, *attempt, path); })) return attempt;
            }
        }
        Result value(std::in_place);
        if (!readValue(cursor, *value, path)) value = std::unexpected(cursor.takeError());
        return value;
    }
}

template <class T, std::size_t Member>
bool readMember(JSONCursor& cursor, void* object, const CodingStep* path) {
    if constexpr (memberRules<T>[Member].presence == CodingPresence::optional) {
        if (cursor.readNull()) return true;
    }
    return readValue(cursor, std::get<Member>(memberReferences(*static_cast<T*>(object))), path);
}

template <class T>
constexpr std::size_t codedMemberCount() {
    std::size_t count = 0;
    for (const CodingRule& rule : memberRules<T>)
        count += rule.presence != CodingPresence::notCoded ? 1 : 0;
    return count;
}

/// What the reader can do with a member of this type by itself.
template <class T>
constexpr MemberKind memberKind() {
    if constexpr (HasDecodingCoding<T> || HasOwnDecoding<T>) return MemberKind::other;
    if constexpr (std::same_as<T, bool>) return MemberKind::boolean;
    if constexpr (std::same_as<T, std::int32_t>) return MemberKind::int32;
    if constexpr (std::same_as<T, std::int64_t>) return MemberKind::int64;
    if constexpr (std::same_as<T, double>) return MemberKind::real;
    if constexpr (std::same_as<T, std::string>) return MemberKind::text;
    if constexpr (std::same_as<T, std::optional<bool>>) return MemberKind::optionalBoolean;
    if constexpr (std::same_as<T, std::optional<std::int32_t>>) return MemberKind::optionalInt32;
    if constexpr (std::same_as<T, std::optional<std::int64_t>>) return MemberKind::optionalInt64;
    if constexpr (std::same_as<T, std::optional<double>>) return MemberKind::optionalReal;
    if constexpr (std::same_as<T, std::optional<std::string>>) return MemberKind::optionalText;
    if constexpr (CodedAggregate<T>) return MemberKind::aggregate;
    return MemberKind::other;
}

template <class T>
struct AggregateCodingOf {
    static const AggregateCoding value;
};

template <class T>
inline constexpr auto memberCodings = []<std::size_t... I>(std::index_sequence<I...>) {
    std::array<MemberCoding, codedMemberCount<T>()> codings;
    std::size_t count = 0;
    [[maybe_unused]] const auto add = [&]<std::size_t Member>(std::integral_constant<std::size_t, Member>) {
        constexpr CodingRule rule = memberRules<T>[Member];
        if constexpr (rule.presence != CodingPresence::notCoded) {
            using Type =
                std::remove_cvref_t<std::tuple_element_t<Member, decltype(memberReferences(std::declval<T&>()))>>;
            MemberCoding& coding = codings[count];
            coding = MemberCoding{rule.key, &readMember<T, Member>,
                                  rule.presence == CodingPresence::required && !isOptional<Type>};
            coding.bit = std::uint64_t{1} << count++;
            if constexpr (rule.presence == CodingPresence::required && memberKind<Type>() != MemberKind::other) {
                coding.kind = memberKind<Type>();
                coding.object = std::addressof(unmade<T>.value);
                coding.member = std::addressof(std::get<Member>(memberReferences(unmade<T>.value)));
                if constexpr (memberKind<Type>() == MemberKind::aggregate)
                    coding.nested = &AggregateCodingOf<Type>::value;
            }
        }
    };
    (add(std::integral_constant<std::size_t, I>()), ...);
    return codings;
}(std::make_index_sequence<memberNames<T>.size()>());

template <class T>
constexpr AggregateCoding AggregateCodingOf<T>::value{memberCodings<T>};

/// Makes room for the elements that a list will have if the others are like those it has. While few are known, only
/// for so many as are given back again without regret, should there not be more of them.
template <class List>
void growList(JSONCursor& cursor, List& elements, std::uint32_t begin) {
    constexpr std::size_t knowing = 64;
    constexpr std::size_t fewBytes = 16'384;
    constexpr std::size_t few = std::min(knowing, fewBytes / sizeof(typename List::value_type));
    const std::size_t count = elements.size();
    const std::size_t expected = cursor.expectedElements(begin, count);
    elements.reserve(std::max(2 * count, count < knowing ? std::min(expected, few) : expected));
}

template <class List>
bool readElement(JSONCursor& cursor, void* list, std::uint32_t begin, const CodingStep* path) {
    using Element = typename List::value_type;
    auto& elements = *static_cast<List*>(list);
    if (elements.size() == elements.capacity() && !elements.empty()) growList(cursor, elements, begin);
    if constexpr (std::same_as<Element, bool>) {
        bool element = false;
        if (!cursor.read(element, path)) return false;
        elements.push_back(element);
        return true;
    } else if constexpr (HasDecodingCoding<Element> || HasOwnDecoding<Element>) {
        auto element = readSelfDecoded<Element>(cursor, path);
        if (!element) return cursor.fail(std::move(element).error());
        elements.push_back(*std::move(element));
        return true;
    } else {
        return readValue(cursor, elements.emplace_back(), path);
    }
}

/// The key of a dictionary: text, an integer in decimal, or an enumerator's raw text. Absent when it is none.
template <class Key>
std::optional<Key> dictionaryKey(std::string_view text) {
    if constexpr (CodedEnumeration<Key>) {
        static_assert(std::same_as<RawValueOf<Key>, std::string_view>, "keys in JSON are text");
        return fromRawValue<Key>(text);
    } else if constexpr (JSONInteger<Key>) {
        Key key{};
        const char* const begin = text.data();
        const char* const end = begin + text.size();
        const auto result = std::from_chars(begin, end, key);
        if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
        return key;
    } else {
        static_assert(std::constructible_from<Key, std::string_view>, "the dictionary's keys cannot be decoded");
        static_assert(!std::same_as<Key, std::string_view>, "the dictionary's keys would end with the document");
        return Key(text);
    }
}

template <class Dictionary>
bool readEntry(JSONCursor& cursor, void* dictionary, std::string_view text, const CodingStep* path) {
    using Key = typename Dictionary::key_type;
    auto& entries = *static_cast<Dictionary*>(dictionary);
    // The last of repeated keys counts, and nothing of the one before may be left.
    const auto readEmptied = [&](auto& value, bool isNew) {
        if (!isNew) value = typename Dictionary::mapped_type();
        return readValue(cursor, value, path);
    };
    if constexpr (CodedOrderedDictionary<Dictionary> && std::same_as<Key, std::string>) {
        // A text goes where it stays at once.
        const auto [value, isNew] = entries.tryEmplace(text);
        return readEmptied(value, isNew);
    } else {
        auto key = dictionaryKey<Key>(text);
        if (!key) return cursor.failCorrupted("The key is not one of the dictionary's", path);
        if constexpr (CodedOrderedDictionary<Dictionary>) {
            const auto [value, isNew] = entries.tryEmplace(*std::move(key));
            return readEmptied(value, isNew);
        } else {
            const auto [entry, isNew] = entries.try_emplace(*std::move(key));
            return readEmptied(entry->second, isNew);
        }
    }
}

template <CodedEnumeration Enumeration>
bool readEnumeration(JSONCursor& cursor, Enumeration& value, const CodingStep* path) {
    const std::uint32_t start = cursor.position();
    RawValueOf<Enumeration> raw{};
    if constexpr (std::same_as<RawValueOf<Enumeration>, std::string_view>) {
        if (!cursor.readTextView(raw, path)) return false;
    } else {
        if (!cursor.read(raw, path)) return false;
    }
    if (const auto enumerator = fromRawValue<Enumeration>(raw)) {
        value = *enumerator;
        return true;
    }
    cursor.moveTo(start);
    return cursor.failRawValue(path);
}

template <class T>
bool readValue(JSONCursor& cursor, T& value, const CodingStep* path) {
    if constexpr (HasDecodingCoding<T> || HasOwnDecoding<T>) {
        auto decoded = readSelfDecoded<T>(cursor, path);
        if (!decoded) return cursor.fail(std::move(decoded).error());
        value = *std::move(decoded);
        return true;
    } else if constexpr (std::same_as<T, Date>) {
        double seconds = 0;
        if (!cursor.read(seconds, path)) return false;
        value = Date(Date::duration(seconds));
        return true;
    } else if constexpr (CodedAsItIs<T>) {
        return cursor.read(value, path);
    } else if constexpr (isOptional<T>) {
        value.reset();
        if (cursor.readNull()) return true;
        using Value = typename T::value_type;
        if constexpr (HasDecodingCoding<Value> || HasOwnDecoding<Value>) {
            auto decoded = readSelfDecoded<Value>(cursor, path);
            if (!decoded) return cursor.fail(std::move(decoded).error());
            value.emplace(*std::move(decoded));
            return true;
        } else {
            return readValue(cursor, value.emplace(), path);
        }
    } else if constexpr (isVector<T>) {
        value.clear();
        if (!cursor.readArray(&value, &readElement<T>, path)) return false;
        if (value.size() < value.capacity() / 2) value.shrink_to_fit();
        return true;
    } else if constexpr (CodedDictionary<T>) {
        value.clear();
        return cursor.readDictionary(&value, &readEntry<T>, path);
    } else if constexpr (CodedEnumeration<T>) {
        return readEnumeration(cursor, value, path);
    } else {
        static_assert(CodedAggregate<T>, "the type needs a Coding");
        static_assert(hasSoundRules<T>(), "a coding rule names no member, or two members have the same key");
        return cursor.readAggregate(std::addressof(value), AggregateCodingOf<T>::value, path);
    }
}

}  // namespace corvane::detail
