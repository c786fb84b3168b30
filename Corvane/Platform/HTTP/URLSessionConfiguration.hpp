#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/HTTP/HTTPHeaderField.hpp>

namespace corvane {

/// What a `URLSession` is made with; the session keeps a copy. Corvane takes nothing from environment variables or
/// files: no proxy, credentials or cookies but those stated here. (The TLS library has variables of its own, for the
/// administrator and for debugging.)
struct CORVANE_EXPORT URLSessionConfiguration {
    /// Cookies kept in memory for the life of the session.
    [[nodiscard]] static URLSessionConfiguration defaultConfiguration();

    /// Keeps nothing between the requests: no cookies.
    [[nodiscard]] static URLSessionConfiguration ephemeral();

    /// Whether the session keeps the cookies it is sent and sends them back (RFC 6265).
    bool storesCookies = true;

    /// The timeout of requests that state none, in seconds; see `URLRequest::timeoutInterval`.
    double timeoutIntervalForRequest = 60;

    /// How many requests to one origin are on the wire at once; the others wait, those of higher priority first.
    /// An origin that answered over HTTP/2 carries them on one connection, and is asked for 100 at once.
    std::size_t maximumConnectionsPerHost = 6;

    /// The largest body that is accepted, in decoded bytes.
    std::size_t maximumResponseBytes = std::size_t{256} << 20U;

    /// Fields added to every request that does not state them itself.
    std::vector<HTTPHeaderField> httpAdditionalHeaders;

    /// The names, in any letter case, of the fields that a redirect to another origin (scheme, host and port) leaves
    /// behind. Add those that carry an application's own credentials.
    std::vector<std::string> originBoundFields = {"Authorization", "Cookie", "Proxy-Authorization"};

    /// "http://host:port", "https://...", "socks5h://..."; absent: connect directly.
    std::optional<std::string> proxy;

    /// A PEM file of the certification authorities to trust instead of the system's.
    std::optional<std::string> caFile;

    /// Wishes that a mobile platform's transport would act on. On Linux they are carried for the application
    /// to read.
    bool shouldUseExtendedBackgroundIdleMode = false;
    bool allowsCellularAccess = true;

    /// Whether a task waits for a network instead of failing when there is none: until the general internet can be
    /// reached, but no longer than half of the request's timeout. Then it is tried all the same, within the other half.
    /// A request to this machine, or to an address that can be reached, does not wait; with a proxy, the proxy's
    /// address counts.
    bool waitsForConnectivity = false;
};

}  // namespace corvane
