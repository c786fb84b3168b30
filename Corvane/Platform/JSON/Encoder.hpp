#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/CodingPath.hpp>
#include <Corvane/Platform/JSON/JSONOutput.hpp>

namespace corvane {

class KeyedEncodingContainer;
class UnkeyedEncodingContainer;

namespace detail {

template <class T>
void writeValue(JSONOutput& output, const T& value, const CodingStep* path);

}  // namespace detail

/// Takes the one value that a type encodes itself as: a single value, a dictionary or an array. Writing none or a
/// second one makes the encoding fail.
///
///     void encode(Encoder& encoder) const {
///         auto members = encoder.container();
///         members.encode("home", home);
///         members.encodeIfPresent("venue", venue);
///     }
///
/// Failures need not be asked for: the first one is what `JSONEncoder` returns. Encoders and containers are good only
/// in the `encode` they were given to, on its thread.
class CORVANE_EXPORT Encoder {
  public:
    Encoder(detail::JSONOutput& output, const detail::CodingStep* path) noexcept : output_(output), path_(path) {}

    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() = default;

    /// The way from the top-level value to this one.
    [[nodiscard]] CodingPath codingPath() const { return detail::pathOf(path_); }

    /// Opens a dictionary, which its container closes.
    [[nodiscard]] KeyedEncodingContainer container();

    /// Opens an array, which its container closes.
    [[nodiscard]] UnkeyedEncodingContainer unkeyedContainer();

    /// Writes the value as `value` would be written.
    template <class T>
    void encode(const T& value) {
        if (claim()) detail::writeValue(output_, value, path_);
    }

    void encodeNil() {
        if (claim()) output_.writeNull();
    }

    /// Makes the encoding fail: `problem` (as in "The score is negative") is what is said, with where it is.
    void fail(std::string_view problem) {
        isUsed_ = true;
        output_.fail(problem, path_);
    }

    /// Whether a value was written or refused.
    [[nodiscard]] bool isUsed() const noexcept { return isUsed_; }

  private:
    [[nodiscard]] bool claim();

    detail::JSONOutput& output_;
    const detail::CodingStep* path_;
    bool isUsed_ = false;
};

}  // namespace corvane
