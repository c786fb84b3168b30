#pragma once

#include <cstddef>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/Encoder.hpp>
#include <Corvane/Platform/JSON/EncodingScope.hpp>

namespace corvane {

class KeyedEncodingContainer;

/// Writes the elements of an array, in the order of the calls; the array ends with the container. Writing while a
/// nested container lives makes the encoding fail.
class CORVANE_EXPORT UnkeyedEncodingContainer {
  public:
    UnkeyedEncodingContainer(const UnkeyedEncodingContainer&) = delete;
    UnkeyedEncodingContainer& operator=(const UnkeyedEncodingContainer&) = delete;
    ~UnkeyedEncodingContainer();

    /// How many elements were written.
    [[nodiscard]] std::size_t count() const noexcept { return count_; }

    template <class T>
    void encode(const T& value) {
        const auto step = detail::CodingStep::to(scope_.path(), count_);
        if (start()) detail::writeValue(scope_.output(), value, &step);
    }

    void encodeNil();

    /// Opens a dictionary as the next element, which its container closes.
    [[nodiscard]] KeyedEncodingContainer nestedContainer();

    /// Opens an array as the next element, which its container closes.
    [[nodiscard]] UnkeyedEncodingContainer nestedUnkeyedContainer();

  private:
    friend class Encoder;
    friend class KeyedEncodingContainer;

    /// `place` is a path, or a step within another container; without `isWanted` nothing is written.
    template <class Place>
    UnkeyedEncodingContainer(detail::JSONOutput& output, const Place& place, bool isWanted);

    [[nodiscard]] bool start();

    detail::EncodingScope scope_;
    std::size_t count_ = 0;
};

}  // namespace corvane
