#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>

#include <Corvane/Core/CustomTypes/TaggedType/TaggedType.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/JSONNumber.hpp>

namespace corvane {

/// Tags numbers of seconds since 1970-01-01T00:00:00Z.
struct SecondsSince1970Tag final {
    SecondsSince1970Tag() = delete;
};

/// A timestamp in whole seconds. Besides the number itself it is made from a double or from any other integer, which
/// is converted through a double: what is behind the point is cut off, so that -0.5 is 0. A number that is not finite,
/// is -1 or less, or is 2^64 or more is a programming error and stops the process.
///
///     const auto age = SecondsSince1970::now() - SecondsSince1970(response.savedAt);
using SecondsSince1970 = TaggedType<SecondsSince1970Tag, std::uint64_t>;

/// What timestamps can do besides. Any thread.
template <>
struct CORVANE_EXPORT TaggedOperations<SecondsSince1970Tag, std::uint64_t> {
    /// The wall-clock time of the clock in force.
    [[nodiscard]] static SecondsSince1970 now();

    [[nodiscard]] static constexpr SecondsSince1970 zero() noexcept;

    /// Absent for absent; stops the process for an impossible timestamp.
    [[nodiscard]] static std::optional<SecondsSince1970> fromOptional(std::optional<double> timeInterval);

    /// The same for a number from JSON, read as a double.
    [[nodiscard]] static std::optional<SecondsSince1970> fromOptionalNumber(const std::optional<JSONNumber>& number);

    /// Reads an HTTP date as `DateFormatter::httpDate` has it. Absent when the text is absent, is no such date, or
    /// means an instant before 1970: what a server sends never stops the process.
    [[nodiscard]] static std::optional<SecondsSince1970> fromResponseTimeStampString(
        std::optional<std::string_view> text);

    /// Seconds; exact up to 2^53.
    [[nodiscard]] constexpr double timeInterval() const noexcept;

    [[nodiscard]] static constexpr std::uint64_t convert(double timeInterval) {
        // Written so that it refuses not-a-number.
        if (!(timeInterval > -1 && timeInterval < 0x1p64)) stopForImpossible(timeInterval);
        return static_cast<std::uint64_t>(timeInterval);
    }

    [[nodiscard]] static constexpr std::uint64_t convert(JSONInteger auto seconds) {
        return convert(static_cast<double>(seconds));
    }

  private:
    [[noreturn]] static void stopForImpossible(double timeInterval);
};

constexpr SecondsSince1970 TaggedOperations<SecondsSince1970Tag, std::uint64_t>::zero() noexcept {
    return SecondsSince1970(std::uint64_t{0});
}

constexpr double TaggedOperations<SecondsSince1970Tag, std::uint64_t>::timeInterval() const noexcept {
    return static_cast<double>(static_cast<const SecondsSince1970*>(this)->value());
}

/// The seconds from `b` to `a`, each taken as a double; negative when `a` is the earlier one.
[[nodiscard]] constexpr double operator-(const SecondsSince1970& a, const SecondsSince1970& b) noexcept {
    return a.timeInterval() - b.timeInterval();
}

}  // namespace corvane
