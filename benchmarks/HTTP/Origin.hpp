#pragma once

#include <sys/resource.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/Support/NginxOrigin.hpp"

/// The documents the clients ask for, by index.
inline constexpr std::array<std::size_t, 2> documentSizes{2048, 204'800};
inline const std::array<std::string, 2> documentPaths{"/plain/2k.json", "/plain/200k.json"};

/// The server of this run; it ends with the process.
inline const NginxOrigin& origin() {
    static const NginxOrigin server;
    return server;
}

/// Stops the run when a client did not get what it asked for: its time would mean nothing.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "benchmark failed: %s\n", what);
    std::exit(1);
}

inline void serveDocuments() {
    require(origin().failure().empty(), origin().failure().c_str());
    origin().serve("2k.json", std::string(documentSizes[0], ' '));
    origin().serve("200k.json", std::string(documentSizes[1], ' '));
}

inline std::string documentURL(std::size_t document) {
    return origin().url(NginxOrigin::Endpoint::http, documentPaths.at(document));
}

/// Seconds of CPU that this process, which the server is no part of, has taken.
inline double cpuSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}
