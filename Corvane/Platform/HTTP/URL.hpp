#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// An absolute URL with an authority (RFC 3986): "https://example.org:8443/fixtures?day=3#top".
///
/// Immutable; copies share one parsed text and may be used from several threads.
class CORVANE_EXPORT URL {
  public:
    /// Reads a URL, of whatever scheme. Absent when the text is none: no scheme, no host (but for "file:"), a
    /// bad port, control characters. Characters that a path, query or fragment may not hold as they are
    /// (blanks, non-ASCII bytes, quotes...) are percent-encoded; everything else stays character for
    /// character.
    [[nodiscard]] static std::optional<URL> parse(std::string_view text);

    /// Resolves a reference against this URL (RFC 3986, 5.2): another URL, "//host/x", "/x", "x", "?x", "#x".
    [[nodiscard]] std::optional<URL> resolving(std::string_view reference) const;

    /// The whole URL. Two URLs are equal when these texts are.
    [[nodiscard]] const std::string& absoluteString() const noexcept;

    /// In lower case, without the colon.
    [[nodiscard]] const std::string& scheme() const noexcept;

    /// As written; an IPv6 address without its brackets.
    [[nodiscard]] const std::string& host() const noexcept;

    /// The port, when the URL states one.
    [[nodiscard]] std::optional<std::uint16_t> port() const noexcept;

    /// The path with "." and ".." segments removed, still percent-encoded; "/" when the URL has none.
    [[nodiscard]] const std::string& path() const noexcept;

    /// What follows "?", still percent-encoded; an empty query ("http://host/?") counts as absent.
    [[nodiscard]] const std::optional<std::string>& query() const noexcept;

    /// What follows "#", still percent-encoded; it is never sent to a server.
    [[nodiscard]] const std::optional<std::string>& fragment() const noexcept;

    /// The name and the password before "@", percent-decoded.
    [[nodiscard]] const std::optional<std::string>& user() const noexcept;
    [[nodiscard]] const std::optional<std::string>& password() const noexcept;

    /// Scheme, host and port in one comparable text, the scheme's own port left out (RFC 6454, 6.2):
    /// "https://example.org:8443". Two URLs of one origin may share credentials.
    [[nodiscard]] const std::string& origin() const noexcept;

    friend bool operator==(const URL& a, const URL& b) noexcept { return a.absoluteString() == b.absoluteString(); }

  private:
    struct Parts;

    explicit URL(std::shared_ptr<const Parts> parts) noexcept;
    static std::optional<URL> fromHandle(void* handle, std::string text);

    std::shared_ptr<const Parts> parts_;
};

}  // namespace corvane

template <>
struct std::hash<corvane::URL> {
    std::size_t operator()(const corvane::URL& url) const noexcept {
        return std::hash<std::string>{}(url.absoluteString());
    }
};
