#include <future>
#include <utility>

#include <Corvane/Testing/LoopbackExchange.hpp>
#include <Corvane/Testing/Private/LoopbackEngine.hpp>

namespace corvane::testing {

LoopbackExchange::LoopbackExchange(std::shared_ptr<LoopbackEngine> engine, LoopbackRequest request,
                                   std::uint64_t number)
    : engine_(std::move(engine)),
      request_(std::make_shared<const LoopbackRequest>(std::move(request))),
      number_(number) {}

void LoopbackExchange::respond(const LoopbackResponse& response) const {
    end(scriptOf(response, *request_));
}

void LoopbackExchange::send(std::string bytes) const {
    engine_->perform(request_->connection, number_,
                     [bytes = std::move(bytes)](LoopbackConnection& connection) { connection.sendPiece(bytes); });
}

void LoopbackExchange::finish() const {
    end({{}, LoopbackScript::Ending::keepAlive});
}

void LoopbackExchange::close() const {
    end({{}, LoopbackScript::Ending::close});
}

void LoopbackExchange::reset() const {
    end({{}, LoopbackScript::Ending::reset});
}

bool LoopbackExchange::waitUntilWritten(std::chrono::milliseconds patience) const {
    // Kept by the command and the connection only, so that the wait ends when they let go of it.
    auto isWritten = std::make_shared<std::promise<void>>();
    std::future<void> outcome = isWritten->get_future();
    engine_->perform(request_->connection, number_, [isWritten = std::move(isWritten)](LoopbackConnection& connection) {
        connection.whenWritten([isWritten] { isWritten->set_value(); });
    });
    if (outcome.wait_for(patience) != std::future_status::ready) return false;
    try {
        outcome.get();
        return true;
    } catch (const std::future_error&) {
        // Let go of without having been called.
        return false;
    }
}

bool LoopbackExchange::waitForHangUp(std::chrono::milliseconds patience) const {
    return engine_->log().waitForEndOf(request_->connection, patience);
}

void LoopbackExchange::end(LoopbackScript script) const {
    engine_->perform(request_->connection, number_,
                     [script = std::move(script)](LoopbackConnection& connection) { connection.endExchange(script); });
}

}  // namespace corvane::testing
