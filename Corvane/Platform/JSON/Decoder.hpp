#pragma once

#include <concepts>
#include <cstdint>
#include <expected>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/CodingPath.hpp>
#include <Corvane/Platform/JSON/DecodingError.hpp>
#include <Corvane/Platform/JSON/JSONCursor.hpp>

namespace corvane {

class KeyedDecodingContainer;
class UnkeyedDecodingContainer;

namespace detail {

/// Reads a value of a type that may have no default.
template <class T>
std::expected<T, DecodingError> readNew(JSONCursor& cursor, const CodingStep* path);

}  // namespace detail

/// A value of a document that a type decodes itself from, as one value or by way of its members or elements.
///
///     static std::expected<Score, DecodingError> decode(const Decoder& decoder) {
///         auto pair = decoder.unkeyedContainer();
///         if (!pair) return std::unexpected(std::move(pair).error());
///         ...
///     }
///
/// A decoder, its containers and the keys that they show are good only until the `decode` they were given to returns,
/// on its thread. A `decode` may leave its value half read or unread. It may be called several times for one value, as
/// a faulty document is looked at again to find out what is wrong with it.
class CORVANE_EXPORT Decoder {
  public:
    Decoder(detail::JSONCursor& cursor, const detail::CodingStep* path) noexcept
        : cursor_(&cursor), path_(path), position_(cursor.position()) {}

    /// The way from the top-level value to this one.
    [[nodiscard]] CodingPath codingPath() const { return detail::pathOf(path_); }

    /// The members of the value. Fails with a type mismatch unless it is a dictionary, with value-not-found for null.
    [[nodiscard]] std::expected<KeyedDecodingContainer, DecodingError> container() const;

    /// The elements of the value. Fails with a type mismatch unless it is an array, with value-not-found for null.
    [[nodiscard]] std::expected<UnkeyedDecodingContainer, DecodingError> unkeyedContainer() const;

    /// Whether the value is null.
    [[nodiscard]] bool decodeNil() const;

    /// The value as a `T`.
    template <class T>
    [[nodiscard]] std::expected<T, DecodingError> decode() const {
        const detail::JSONCursor::ExactScope scope(*cursor_);
        cursor_->moveTo(position_);
        return detail::readNew<T>(*cursor_, path_);
    }

    /// An error about this value: `problem` (as in "The score is negative") with where it stands.
    [[nodiscard]] DecodingError dataCorrupted(std::string_view problem) const;

  private:
    detail::JSONCursor* cursor_;
    const detail::CodingStep* path_;
    std::uint32_t position_;
};

}  // namespace corvane
