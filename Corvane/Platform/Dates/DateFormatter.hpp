#pragma once

#include <optional>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

/// Reads instants from texts of one fixed form, whatever the user's locale and time zone. Immutable; any thread.
class CORVANE_EXPORT DateFormatter {
  public:
    /// The one formatter of HTTP dates: the pattern "EEE, dd MMM yyyy HH:mm:ss z" in the locale "en_US_POSIX" and at
    /// GMT, which is the preferred form of RFC 9110, section 5.6.7: "Sun, 06 Nov 1994 08:49:37 GMT".
    ///
    /// Every digit has to be there, names are in the case of the RFC, and the day has to exist. The name of the weekday
    /// is not held against the date; "UTC" is taken for "GMT", and a leap second, 23:59:60, for the second after it.
    [[nodiscard]] static const DateFormatter& httpDate() noexcept;

    /// The instant that the text means; absent when the text is absent or is nothing but exactly such a date.
    [[nodiscard]] std::optional<Date> date(std::optional<std::string_view> text) const noexcept;

  private:
    constexpr DateFormatter() noexcept = default;
};

}  // namespace corvane
