#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Testing/LoopbackRequest.hpp>

namespace corvane::testing {

/// Reads HTTP/1.1 requests (RFC 9112) from the bytes of one connection, however they are cut into pieces.
///
/// It is strict where leniency would hide a client's mistake: what a strict server may refuse, it refuses.
class RequestParser {
  public:
    /// A longer header section is answered with 431, a longer body with 413.
    static constexpr std::size_t maximumHead = 64 * 1024;
    static constexpr std::size_t maximumBody = 64 * 1024 * 1024;

    enum class Progress : unsigned char {
        /// More bytes are needed.
        incomplete,
        /// As `incomplete`, and the client waits for "100 Continue" before it sends the body; said once a
        /// request.
        expectsContinue,
        /// `takeRequest` has a request.
        complete,
        /// `rejection` has the status to refuse the connection's further bytes with.
        malformed,
    };

    /// Bytes that arrived.
    void append(std::string_view bytes) { buffer_ += bytes; }

    /// Gets as far as the bytes go, at most to the end of one request; what follows it waits for its turn.
    [[nodiscard]] Progress advance();

    /// The complete request, after which the next one is read. Only after `advance` said `complete`.
    [[nodiscard]] LoopbackRequest takeRequest();

    [[nodiscard]] int rejection() const noexcept { return rejection_; }

    /// Bytes that wait to be read.
    [[nodiscard]] std::size_t buffered() const noexcept { return buffer_.size(); }

  private:
    enum class State : unsigned char { head, body, chunkSize, chunkData, trailer, complete, malformed };

    [[nodiscard]] bool step();
    [[nodiscard]] bool readHead();
    [[nodiscard]] bool readBody();
    [[nodiscard]] bool readChunkSize();
    [[nodiscard]] bool readChunkData();
    [[nodiscard]] bool readTrailer();
    [[nodiscard]] bool parseRequestLine(std::string_view line);
    [[nodiscard]] bool parseFieldLine(std::string_view line);
    [[nodiscard]] bool chooseFraming();
    [[nodiscard]] std::optional<std::string> takeLine(int statusWhenTooLong);
    /// Always false, so that a refusal reads `return reject(400)`.
    bool reject(int status) noexcept;

    std::string buffer_;
    LoopbackRequest request_;
    State state_ = State::head;
    /// Bytes of the body or of the chunk still to come.
    std::size_t remaining_ = 0;
    bool continueIsDue_ = false;
    int rejection_ = 0;
};

}  // namespace corvane::testing
