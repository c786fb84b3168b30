#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <tuple>

#include <Corvane/Platform/JSON/CodingTraits.hpp>
#include <Corvane/Platform/JSON/Encoder.hpp>
#include <Corvane/Platform/JSON/KeyedEncodingContainer.hpp>
#include <Corvane/Platform/JSON/RawValues.hpp>
#include <Corvane/Platform/JSON/UnkeyedEncodingContainer.hpp>

// How each kind of type is written.

namespace corvane::detail {

template <class T>
void writeSelfEncoded(JSONOutput& output, const T& value, const CodingStep* path) {
    Encoder encoder(output, path);
    if constexpr (HasEncodingCoding<T>) {
        Coding<T>::encode(value, encoder);
    } else {
        value.encode(encoder);
    }
    if (!encoder.isUsed()) encoder.fail("No value was encoded");
}

template <class T>
void writeMember(JSONOutput& output, const CodingRule& rule, const T& value, const CodingStep* path) {
    if constexpr (isOptional<T>) {
        if (value) writeMember(output, rule, *value, path);
    } else {
        const auto step = CodingStep::to(path, rule.key);
        output.startMember(rule.key, &step);
        writeValue(output, value, &step);
    }
}

template <class T>
void writeAggregate(JSONOutput& output, const T& value, const CodingStep* path) {
    static_assert(hasSoundRules<T>(), "a coding rule names no member, or two members have the same key");
    if (!output.openDictionary(path)) return;
    const auto references = memberReferences(value);
    const auto write = [&]<std::size_t Member>(std::integral_constant<std::size_t, Member>) {
        constexpr CodingRule rule = memberRules<T>[Member];
        if constexpr (rule.presence != CodingPresence::notCoded) {
            writeMember(output, rule, std::get<Member>(references), path);
        }
    };
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        (write(std::integral_constant<std::size_t, I>()), ...);
    }(std::make_index_sequence<memberNames<T>.size()>());
    output.closeDictionary();
}

/// The text of a dictionary's key; absent for an enumerator that has none.
template <class Key>
std::optional<std::string> keyText(const Key& key) {
    if constexpr (CodedEnumeration<Key>) {
        static_assert(std::same_as<RawValueOf<Key>, std::string_view>, "keys in JSON are text");
        const auto raw = rawValue(key);
        return raw ? std::optional<std::string>(*raw) : std::nullopt;
    } else if constexpr (JSONInteger<Key>) {
        return std::to_string(key);
    } else {
        static_assert(std::convertible_to<const Key&, std::string_view>, "the dictionary's keys cannot be encoded");
        return std::string(std::string_view(key));
    }
}

template <class Dictionary>
void writeDictionary(JSONOutput& output, const Dictionary& dictionary, const CodingStep* path) {
    if (!output.openDictionary(path)) return;
    for (const auto& [key, value] : dictionary) {
        const auto text = keyText(key);
        if (!text) {
            output.fail("A key is none of the enumeration's values", path);
            break;
        }
        const auto step = CodingStep::to(path, *text);
        output.startMember(*text, &step);
        writeValue(output, value, &step);
    }
    output.closeDictionary();
}

template <class List>
void writeList(JSONOutput& output, const List& list, const CodingStep* path) {
    if (!output.openArray(path)) return;
    auto step = CodingStep::to(path, std::size_t{0});
    for (const typename List::value_type& element : list) {
        output.startElement();
        writeValue(output, element, &step);
        ++step.index;
    }
    output.closeArray();
}

template <class T>
void writeValue(JSONOutput& output, const T& value, const CodingStep* path) {
    if constexpr (HasEncodingCoding<T> || HasOwnEncoding<T>) {
        writeSelfEncoded(output, value, path);
    } else if constexpr (std::same_as<T, Date>) {
        output.write(value.time_since_epoch().count(), path);
    } else if constexpr (std::same_as<T, bool> || JSONInteger<T>) {
        output.write(value);
    } else if constexpr (std::floating_point<T>) {
        output.write(value, path);
    } else if constexpr (std::same_as<T, JSONValue>) {
        output.writeJSON(value, path);
    } else if constexpr (std::convertible_to<const T&, std::string_view>) {
        output.writeText(value, path);
    } else if constexpr (isOptional<T>) {
        if (value) {
            writeValue(output, *value, path);
        } else {
            output.writeNull();
        }
    } else if constexpr (isVector<T>) {
        writeList(output, value, path);
    } else if constexpr (CodedDictionary<T>) {
        writeDictionary(output, value, path);
    } else if constexpr (CodedEnumeration<T>) {
        const auto raw = rawValue(value);
        if (!raw) return output.fail("The value is none of the enumeration's", path);
        writeValue(output, *raw, path);
    } else {
        static_assert(CodedAggregate<T>, "the type needs a Coding");
        writeAggregate(output, value, path);
    }
}

}  // namespace corvane::detail
