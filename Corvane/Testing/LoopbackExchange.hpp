#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Testing/LoopbackRequest.hpp>
#include <Corvane/Testing/LoopbackResponse.hpp>

namespace corvane::testing {

class LoopbackEngine;
struct LoopbackScript;

/// One request that waits for its answer, which the test gives piece by piece and whenever it likes. Nothing
/// here depends on real time, so an idle timeout can be tried on a virtual clock.
///
/// A handle: copies mean the same exchange. All operations may be called on any thread, never block (but
/// for the waits) and do nothing once the exchange is over, the client is gone or the server destroyed.
class CORVANE_EXPORT LoopbackExchange {
  public:
    [[nodiscard]] const LoopbackRequest& request() const noexcept { return *request_; }

    /// Sends the whole of `response`, its fault included, and ends the exchange.
    void respond(const LoopbackResponse& response) const;

    /// Sends `bytes` as they stand: parts of `LoopbackResponse::head`, of a body, or anything else.
    void send(std::string bytes) const;

    /// The pieces sent were a whole answer: ends the exchange, and the connection is ready for the next one.
    void finish() const;

    /// Closes the connection in order, or resets it, when the pieces sent before are written.
    void close() const;
    void reset() const;

    /// Blocks until the system has taken everything sent so far; of a piece larger than what its buffers hold, the
    /// client has then read a part. False when `patience` of real time is exhausted or the exchange is over.
    [[nodiscard]] bool waitUntilWritten(std::chrono::milliseconds patience = std::chrono::seconds(20)) const;

    /// Blocks until the client has hung up; false when it has not within `patience` of real time.
    [[nodiscard]] bool waitForHangUp(std::chrono::milliseconds patience = std::chrono::seconds(20)) const;

  private:
    friend class LoopbackEngine;
    LoopbackExchange(std::shared_ptr<LoopbackEngine> engine, LoopbackRequest request, std::uint64_t number);

    void end(LoopbackScript script) const;

    std::shared_ptr<LoopbackEngine> engine_;
    std::shared_ptr<const LoopbackRequest> request_;
    /// Which exchange of the connection; a later one is another's.
    std::uint64_t number_;
};

}  // namespace corvane::testing
