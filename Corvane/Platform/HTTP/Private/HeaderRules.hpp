#pragma once

#include <string>
#include <string_view>

/// The rules of HTTP's header section, as pure functions (RFC 9110, 5; RFC 9112, 5).
namespace corvane::http {

/// Whether the text may be a field's name or a method: one or more token characters (RFC 9110, 5.6.2).
[[nodiscard]] bool isToken(std::string_view text) noexcept;

/// Whether the text may be a field's value: anything but control characters other than tab (RFC 9110, 5.5).
[[nodiscard]] bool isFieldValue(std::string_view text) noexcept;

/// Compares as field names are compared: ASCII letters regardless of case.
[[nodiscard]] bool equalNames(std::string_view a, std::string_view b) noexcept;

/// The text without the blanks and tabs around it.
[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

/// The usual capitals of a field name: "last-modified" becomes "Last-Modified", "etag" "ETag".
[[nodiscard]] std::string canonicalName(std::string_view name);

}  // namespace corvane::http
