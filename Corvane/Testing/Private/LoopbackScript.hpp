#pragma once

#include <string>

#include <Corvane/Testing/LoopbackRequest.hpp>
#include <Corvane/Testing/LoopbackResponse.hpp>

namespace corvane::testing {

/// What a connection does for one answer: the bytes it writes and what becomes of it afterwards.
struct LoopbackScript {
    enum class Ending : unsigned char {
        /// The next request may come.
        keepAlive,
        /// The server's side is closed in order.
        close,
        /// The connection is reset.
        reset,
        /// Nothing more is ever sent and the connection is left open.
        silence,
        /// Header lines follow for as long as the client takes them.
        endlessHeaders,
    };

    std::string bytes = {};
    Ending ending = Ending::keepAlive;
};

/// Puts `response` to `request` on the wire, its fault included. Pure: faults are nothing but other bytes and
/// another ending.
[[nodiscard]] LoopbackScript scriptOf(const LoopbackResponse& response, const LoopbackRequest& request);

}  // namespace corvane::testing
