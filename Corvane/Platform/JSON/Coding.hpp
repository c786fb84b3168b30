#pragma once

#include <concepts>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace corvane {

class Decoder;
class Encoder;

/// The one place where a type says how it is coded as JSON. Nothing has to be said of numbers, Booleans, text, `Date`,
/// `JSONValue`, optionals, vectors, maps, `OrderedDictionary`, scoped enumerations whose raw values are their
/// enumerators' names, and plain structs of all these (at most 64 members, no base, no reference, no array of the
/// language).
///
/// Any other wish is written either in the type itself or, for types that cannot be changed, under the same name in a
/// specialisation of this template:
///
/// - other keys, members that may be missing, members that are not coded: `codingRules` (see `CodingRule`);
/// - another text or a number for each enumerator: `rawValues` (see `RawValue`), always in a specialisation;
/// - reading by hand: `static std::expected<T, DecodingError> decode(const Decoder&)`;
/// - writing by hand: `void encode(Encoder&) const`, which in a specialisation is
///   `static void encode(const T&, Encoder&)`.
///
///     struct Team {
///         std::int64_t id;
///         std::string shortName;
///         std::vector<std::string> tags;
///
///         static constexpr corvane::CodingRule codingRules[] = {
///             {.member = "shortName", .key = "short_name"},
///             {.member = "tags", .presence = corvane::CodingPresence::optional},
///         };
///     };
template <class T>
struct Coding {};

enum class CodingPresence : unsigned char {
    /// Decoding fails when there is no such member, unless its type is an optional.
    required,
    /// The struct's own initial value stays when the member is missing or null. It is always written.
    optional,
    /// Neither read nor written.
    notCoded,
};

/// What is special about one member of a struct. A rule for a member that does not exist does not compile.
struct CodingRule {
    /// The member's name in C++.
    std::string_view member;
    /// Its key in JSON; empty: the name.
    std::string_view key = {};
    CodingPresence presence = CodingPresence::required;
};

/// One enumerator and what it is in JSON: text or a number.
///
///     template <>
///     struct corvane::Coding<Side> {
///         static constexpr std::array rawValues{corvane::RawValue{Side::home, "H"}, corvane::RawValue{Side::away,
///         "A"}};
///     };
template <class Enumeration, class Raw>
    requires std::is_enum_v<Enumeration> && (std::integral<Raw> || std::same_as<Raw, std::string_view>)
struct RawValue {
    Enumeration enumerator;
    Raw rawValue;
};

template <class Enumeration, std::size_t N>
RawValue(Enumeration, const char (&)[N]) -> RawValue<Enumeration, std::string_view>;

template <class Enumeration, std::integral Raw>
RawValue(Enumeration, Raw) -> RawValue<Enumeration, Raw>;

}  // namespace corvane
