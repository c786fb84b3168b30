#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/Encoder.hpp>
#include <Corvane/Platform/JSON/EncodingScope.hpp>

namespace corvane {

class UnkeyedEncodingContainer;

/// Writes the members of a dictionary, in the order of the calls; the dictionary ends with the container. Write each
/// key once, and nothing while a nested container lives: that makes the encoding fail.
class CORVANE_EXPORT KeyedEncodingContainer {
  public:
    KeyedEncodingContainer(const KeyedEncodingContainer&) = delete;
    KeyedEncodingContainer& operator=(const KeyedEncodingContainer&) = delete;
    ~KeyedEncodingContainer();

    template <class T>
    void encode(std::string_view key, const T& value) {
        const auto step = detail::CodingStep::to(scope_.path(), key);
        if (start(step)) detail::writeValue(scope_.output(), value, &step);
    }

    /// Writes no member for an absent value.
    template <class T>
    void encodeIfPresent(std::string_view key, const std::optional<T>& value) {
        if (value) encode(key, *value);
    }

    void encodeNil(std::string_view key);

    /// Opens a dictionary under `key`, which its container closes.
    [[nodiscard]] KeyedEncodingContainer nestedContainer(std::string_view key);

    /// Opens an array under `key`, which its container closes.
    [[nodiscard]] UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view key);

  private:
    friend class Encoder;
    friend class UnkeyedEncodingContainer;

    /// `place` is a path, or a step within another container; without `isWanted` nothing is written.
    template <class Place>
    KeyedEncodingContainer(detail::JSONOutput& output, const Place& place, bool isWanted);

    [[nodiscard]] bool start(const detail::CodingStep& step);

    detail::EncodingScope scope_;
};

}  // namespace corvane
