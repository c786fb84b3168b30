#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/Decoder.hpp>

namespace corvane {

/// The members of a dictionary, each reachable at any time and any number of times. Of members with the same key the
/// last value counts, in the place of the first. Looking keys up in payload order, or in a dictionary of few members,
/// costs no hashing.
///
/// Copies are cheap. Good as long as the decoder it came from.
class CORVANE_EXPORT KeyedDecodingContainer {
  public:
    /// The way from the top-level value to this dictionary.
    [[nodiscard]] CodingPath codingPath() const { return detail::pathOf(path_); }

    /// All keys, in payload order.
    [[nodiscard]] std::vector<std::string_view> allKeys() const;

    /// Whether there is such a member, be it null.
    [[nodiscard]] bool contains(std::string_view key) const { return find(key) != detail::JSONMemberTable::none; }

    /// The member as a `T`. Fails with key-not-found when there is none.
    template <class T>
    [[nodiscard]] std::expected<T, DecodingError> decode(std::string_view key) const {
        const detail::JSONCursor::ExactScope scope(*cursor_);
        const auto step = moveTo(key);
        if (!step) return std::unexpected(cursor_->takeError());
        return detail::readNew<T>(*cursor_, &*step);
    }

    /// The member as a `T`; absent when there is none or it is null.
    template <class T>
    [[nodiscard]] std::expected<std::optional<T>, DecodingError> decodeIfPresent(std::string_view key) const {
        if (!contains(key)) return std::optional<T>();
        return decode<std::optional<T>>(key);
    }

    /// Whether the member is null. Fails with key-not-found when there is none.
    [[nodiscard]] std::expected<bool, DecodingError> decodeNil(std::string_view key) const;

    /// The members of the dictionary under `key`.
    [[nodiscard]] std::expected<KeyedDecodingContainer, DecodingError> nestedContainer(std::string_view key) const;

    /// The elements of the array under `key`.
    [[nodiscard]] std::expected<UnkeyedDecodingContainer, DecodingError> nestedUnkeyedContainer(
        std::string_view key) const;

    /// A decoder for the value under `key`.
    [[nodiscard]] std::expected<Decoder, DecodingError> decoder(std::string_view key) const;

    /// For Corvane's own decoders: reads the dictionary under `key` into `target` by calling `entry` for each member in
    /// payload order, with the cursor at its value. It is read in good faith (see `JSONCursor`) and, when that fails,
    /// once more exactly. `prepare` is called before either and told how many members there are at most: if none
    /// holds more than one value, so many there are. Absent when all went well.
    [[nodiscard]] std::optional<DecodingError> readMembers(std::string_view key, void* target,
                                                           detail::JSONCursor::ReadEntry entry,
                                                           void (*prepare)(void* target, std::size_t most)) const;

  private:
    friend class Decoder;

    struct Members {
        detail::JSONMemberTable table;
        /// Behind the member that was found last: models mostly ask in payload order.
        std::size_t likely = 0;
    };

    KeyedDecodingContainer(detail::JSONCursor& cursor, const detail::CodingStep* path,
                           std::shared_ptr<Members> members) noexcept
        : cursor_(&cursor), path_(path), members_(std::move(members)) {}

    [[nodiscard]] std::size_t find(std::string_view key) const;

    /// Moves to the member's value; the step holds as long as the container and `key`.
    [[nodiscard]] std::optional<detail::CodingStep> moveTo(std::string_view key) const;

    detail::JSONCursor* cursor_;
    const detail::CodingStep* path_;
    std::shared_ptr<Members> members_;
};

}  // namespace corvane
