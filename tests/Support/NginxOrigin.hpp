#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "TemporaryDirectory.hpp"

/// A real origin server for tests and benchmarks: nginx with static files, over HTTP/1.1, over TLS and over HTTP/2.
///
/// It runs from construction to destruction as a child process of its own, in a fresh folder, on free ports, with
/// a private certificate authority; it needs no rights and touches nothing outside that folder. Without nginx or
/// openssl it does not serve, and `failure` says why.
class NginxOrigin {
  public:
    enum class Endpoint : unsigned char {
        http,
        https,
        /// HTTP/2 over TLS, by ALPN.
        http2,
        /// TLS with a certificate for another host's name, and with one that has expired.
        httpsOfAnotherHost,
        httpsExpired,
    };

    /// When the files were last modified, as the header fields say it.
    static constexpr std::string_view lastModified = "Fri, 15 Mar 2024 19:30:00 GMT";

    NginxOrigin();
    ~NginxOrigin();
    NginxOrigin(const NginxOrigin&) = delete;
    NginxOrigin& operator=(const NginxOrigin&) = delete;

    /// Why it does not serve; empty when it does.
    [[nodiscard]] const std::string& failure() const noexcept { return failure_; }

    /// Serves `content` at "/plain/NAME" as it is, and at "/gzip/NAME" compressed for who accepts that.
    void serve(const std::string& name, std::string_view content) const;

    /// The same with that many zero bytes, which take no space on the disk.
    void serveZeros(const std::string& name, std::size_t size) const;

    [[nodiscard]] std::string url(Endpoint endpoint, std::string_view path, std::string_view host = "127.0.0.1") const;

    [[nodiscard]] std::uint16_t port(Endpoint endpoint) const noexcept;

    /// The certificate of the authority that signed the server's, for clients that are to trust it.
    [[nodiscard]] std::string caFile() const { return folder_.path() / "authority.pem"; }

  private:
    /// Runs commands of a shell in the folder, their output in its log; they end with the calling thread at the
    /// latest. -1 on failure.
    [[nodiscard]] pid_t spawn(const std::string& commands) const;
    [[nodiscard]] bool openPorts();
    void writeConfiguration() const;
    [[nodiscard]] std::string server(Endpoint endpoint, const std::string& certificate) const;
    [[nodiscard]] std::string log() const;

    corvane::testing::TemporaryDirectory folder_;
    std::vector<int> sockets_;
    std::vector<std::uint16_t> ports_;
    pid_t process_ = -1;
    std::string failure_;
};
