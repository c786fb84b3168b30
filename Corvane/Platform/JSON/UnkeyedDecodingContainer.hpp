#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/Decoder.hpp>

namespace corvane {

/// The elements of an array, read one after the other. An element that could not be decoded stays the next one: try it
/// as something else, or `skip` it. Asking beyond the end fails with value-not-found.
///
/// Copies are cheap and advance on their own. Good as long as the decoder it came from.
class CORVANE_EXPORT UnkeyedDecodingContainer {
  public:
    /// The way from the top-level value to this array.
    [[nodiscard]] CodingPath codingPath() const { return detail::pathOf(path_); }

    [[nodiscard]] std::size_t count() const noexcept { return elements_->size(); }

    [[nodiscard]] std::size_t currentIndex() const noexcept { return index_; }

    [[nodiscard]] bool isAtEnd() const noexcept { return index_ == count(); }

    /// The next element as a `T`.
    template <class T>
    [[nodiscard]] std::expected<T, DecodingError> decode() {
        const detail::JSONCursor::ExactScope scope(*cursor_);
        const auto step = moveToNext();
        if (!step) return std::unexpected(cursor_->takeError());
        auto value = detail::readNew<T>(*cursor_, &*step);
        if (value) ++index_;
        return value;
    }

    /// The next element as a `T`; absent when it is null or there is none.
    template <class T>
    [[nodiscard]] std::expected<std::optional<T>, DecodingError> decodeIfPresent() {
        if (isAtEnd()) return std::optional<T>();
        return decode<std::optional<T>>();
    }

    /// Whether the next element is null, which is then read.
    [[nodiscard]] std::expected<bool, DecodingError> decodeNil();

    /// Passes the next element; false at the end.
    bool skip() noexcept;

    /// The members of the next element, which is thereby read.
    [[nodiscard]] std::expected<KeyedDecodingContainer, DecodingError> nestedContainer();

    /// The elements of the next element, which is thereby read.
    [[nodiscard]] std::expected<UnkeyedDecodingContainer, DecodingError> nestedUnkeyedContainer();

    /// A decoder for the next element, which is thereby read.
    [[nodiscard]] std::expected<Decoder, DecodingError> decoder();

  private:
    friend class Decoder;

    UnkeyedDecodingContainer(detail::JSONCursor& cursor, const detail::CodingStep* path,
                             std::shared_ptr<const std::vector<std::uint32_t>> elements) noexcept
        : cursor_(&cursor), path_(path), elements_(std::move(elements)) {}

    /// Moves to the next element; the step holds as long as the container.
    [[nodiscard]] std::optional<detail::CodingStep> moveToNext() const;
    [[nodiscard]] std::expected<Decoder, DecodingError> next() const;

    detail::JSONCursor* cursor_;
    const detail::CodingStep* path_;
    std::shared_ptr<const std::vector<std::uint32_t>> elements_;
    std::size_t index_ = 0;
};

}  // namespace corvane
