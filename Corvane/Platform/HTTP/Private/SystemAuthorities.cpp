#include <unistd.h>

#include <Corvane/Platform/HTTP/Private/SystemAuthorities.hpp>

namespace corvane::http {

const std::string& systemAuthorities() {
    static const auto* const file = [] {
        for (const char* const candidate : {
                 "/etc/ssl/certs/ca-certificates.crt",                 // Debian, Arch, Alpine
                 "/etc/pki/tls/certs/ca-bundle.crt",                   // Fedora, RHEL
                 "/etc/ssl/ca-bundle.pem",                             // openSUSE
                 "/etc/pki/ca-trust/extracted/pem/tls-ca-bundle.pem",  // RHEL 7 and later
                 "/etc/ssl/cert.pem",                                  // Alpine, OpenELEC
             }) {
            if (::access(candidate, R_OK) == 0) return new std::string(candidate);
        }
        return new std::string;
    }();
    return *file;
}

}  // namespace corvane::http
