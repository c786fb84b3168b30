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
        if (key.contains('\\') || key.contains('"')) {
            // A document has it with escapes. No text in one has a zero.
            quoted_[0].add(0, '"');
            quoted_[0].mask = ~std::uint64_t{0};
            return;
        }
        for (std::size_t i = 0; i < quoted_.size(); ++i)
            for (std::size_t j = 0; j < word && i * word + j < key.size() + 2; ++j)
                quoted_[i].add(j, quotedCharacter(i * word + j));
    }

    /// Whether the key stands at `quote`, in quotes and without escapes. Sixteen bytes must be readable there, and so
    /// must be what is before `limit`.
    [[nodiscard, gnu::always_inline]] bool isAt(const char* quote, const char* limit) const noexcept {
        if (!quoted_[0].matches(quote) || !quoted_[1].matches(quote + word)) return false;
        if (key.size() + 2 <= 2 * word) return true;
        const auto room = static_cast<std::size_t>(limit - quote);
        return room >= key.size() + 2 && quote[key.size() + 1] == '"' &&
               std::memcmp(quote + 1, key.data(), key.size()) == 0;
    }

    std::string_view key;
    Read read = nullptr;
    /// An object of the struct and this member of it, of which only the distance is of interest; null for other kinds.
    const void* object = nullptr;
    const void* member = nullptr;
    /// For a member that is a struct itself.
    const AggregateCoding* nested = nullptr;
    /// Among the members of the struct.
    std::uint64_t bit = 0;
    MemberKind kind = MemberKind::other;
    bool required = false;

  private:
    static constexpr std::size_t word = sizeof(std::uint64_t);

    /// Characters to compare in one go; the others may be any.
    struct Word {
        std::uint64_t bytes = 0;
        std::uint64_t mask = 0;

        constexpr void add(std::size_t place, char character) {
            std::array<unsigned char, word> one{};
            one[place] = static_cast<unsigned char>(character);
            bytes |= std::bit_cast<std::uint64_t>(one);
            one[place] = 0xFF;
            mask |= std::bit_cast<std::uint64_t>(one);
        }

        [[nodiscard, gnu::always_inline]] bool matches(const char* text) const noexcept {
            std::uint64_t found = 0;
            std::memcpy(&found, text, sizeof found);
            return ((found ^ bytes) & mask) == 0;
        }
    };

    [[nodiscard]] constexpr char quotedCharacter(std::size_t place) const {
        return place == 0 || place == key.size() + 1 ? '"' : key[place - 1];
    }

    /// The beginning of the key as it stands in a document; a quote and zeros when it cannot stand there without
    /// escapes.
    std::array<Word, 2> quoted_;
};

/// How the members of a struct are found and read. At most 64.
struct AggregateCoding {
    std::span<const MemberCoding> members;
    /// For each length of a key the members that have such a key; long ones share the last place.
    std::array<std::uint64_t, 32> byLength{};
    std::uint64_t required = 0;

    constexpr explicit AggregateCoding(std::span<const MemberCoding> coded) : members(coded) {
        for (std::size_t i = 0; i < members.size(); ++i) {
            byLength[lengthClass(members[i].key.size())] |= std::uint64_t{1} << i;
            if (members[i].required) required |= std::uint64_t{1} << i;
        }
    }

    static constexpr std::size_t lengthClass(std::size_t length) noexcept { return length < 31 ? length : 31; }

    /// The member called `key`, or null.
    [[nodiscard]] const MemberCoding* find(std::string_view key) const noexcept {
        return among(key.size(), [key](const MemberCoding& member) { return member.key == key; });
    }

    /// The same for a key that stands in a document; one with escapes is not found.
    [[nodiscard, gnu::always_inline]] const MemberCoding* findAt(std::string_view raw) const noexcept {
        return among(raw.size(), [raw](const MemberCoding& member) {
            return member.isAt(raw.data() - 1, raw.data() + raw.size() + 1);
        });
    }

  private:
    template <class Matches>
    [[gnu::always_inline]] const MemberCoding* among(std::size_t length, Matches matches) const noexcept {
        for (std::uint64_t left = byLength[lengthClass(length)]; left != 0; left &= left - 1) {
            const MemberCoding& member = members[static_cast<std::size_t>(std::countr_zero(left))];
            if (matches(member)) return &member;
        }
        return nullptr;
    }
};

}  // namespace corvane::detail
