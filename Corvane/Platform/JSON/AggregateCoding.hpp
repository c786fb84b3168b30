#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace corvane::detail {

class JSONCursor;
struct AggregateCoding;
struct CodingStep;

/// The types of members that the reader knows by itself; all others are read by a function made for them.
enum class MemberKind : unsigned char {
    other,
    boolean,
    int32,
    int64,
    real,
    text,
    optionalBoolean,
    optionalInt32,
    optionalInt64,
    optionalReal,
    optionalText,
    aggregate,
};

/// How one member of a struct is found and read.
struct MemberCoding {
    using Read = bool (*)(JSONCursor&, void* object, const CodingStep*);

    constexpr MemberCoding() = default;

    constexpr MemberCoding(std::string_view memberKey, Read readMember, bool isRequired)
        : key(memberKey), read(readMember), required(isRequired) {
        std::array<unsigned char, word> first{};
        std::array<unsigned char, word> used{};
        std::array<unsigned char, word> last{};
        for (std::size_t i = 0; i < key.size() && i < word; ++i) {
            first[i] = static_cast<unsigned char>(key[i]);
            used[i] = 0xFF;
        }
        for (std::size_t i = 0; key.size() >= word && i < word; ++i)
            last[i] = static_cast<unsigned char>(key[key.size() - word + i]);
        head = std::bit_cast<std::uint64_t>(first);
        headMask = std::bit_cast<std::uint64_t>(used);
        tail = std::bit_cast<std::uint64_t>(last);
    }

    /// Whether `other` is the key. Eight bytes must be readable from its beginning, however short it is.
    [[nodiscard, gnu::always_inline]] bool isKey(std::string_view other) const noexcept {
        if (other.size() != key.size() || ((load(other.data()) ^ head) & headMask) != 0) return false;
        if (other.size() <= word) return true;
        if (load(other.data() + other.size() - word) != tail) return false;
        return other.size() <= 2 * word || other == key;
    }

    std::string_view key;
    Read read = nullptr;
    /// The first bytes of the key, zeros behind it, and the last ones of a long key.
    std::uint64_t head = 0;
    std::uint64_t headMask = 0;
    std::uint64_t tail = 0;
    /// An object of the struct and this member of it, of which only the distance is of interest; null for other kinds.
    const void* object = nullptr;
    const void* member = nullptr;
    /// For a member that is a struct itself.
    const AggregateCoding* nested = nullptr;
    MemberKind kind = MemberKind::other;
    bool required = false;

  private:
    static constexpr std::size_t word = sizeof(std::uint64_t);

    static std::uint64_t load(const char* text) noexcept {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text, sizeof bytes);
        return bytes;
    }
};

/// How the members of a struct are found and read. At most 64.
struct AggregateCoding {
    std::span<const MemberCoding> members;
    /// For each length of a key the members that have such a key; long ones share the last place.
    std::array<std::uint64_t, 32> byLength{};
    std::uint64_t required = 0;
    /// Whether a key holds a backslash: then a document's keys are only like ours without their escapes.
    bool hasBackslash = false;

    constexpr explicit AggregateCoding(std::span<const MemberCoding> coded) : members(coded) {
        for (std::size_t i = 0; i < members.size(); ++i) {
            byLength[lengthClass(members[i].key.size())] |= std::uint64_t{1} << i;
            if (members[i].required) required |= std::uint64_t{1} << i;
            hasBackslash = hasBackslash || members[i].key.contains('\\');
        }
    }

    static constexpr std::size_t lengthClass(std::size_t length) noexcept { return length < 31 ? length : 31; }

    /// The member called `key`, or the number of members. `likely` is looked at first. Eight bytes must be readable
    /// from the beginning of `key`.
    [[nodiscard, gnu::always_inline]] std::size_t find(std::string_view key, std::size_t likely) const noexcept {
        if (likely < members.size() && members[likely].isKey(key)) return likely;
        for (std::uint64_t left = byLength[lengthClass(key.size())]; left != 0; left &= left - 1) {
            const auto candidate = static_cast<std::size_t>(std::countr_zero(left));
            if (members[candidate].isKey(key)) return candidate;
        }
        return members.size();
    }
};

}  // namespace corvane::detail
