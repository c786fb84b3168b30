#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <Corvane/Platform/Private/FileDescriptor.hpp>
#include <Corvane/Testing/LoopbackRequest.hpp>
#include <Corvane/Testing/LoopbackResponse.hpp>
#include <Corvane/Testing/Private/LoopbackScript.hpp>
#include <Corvane/Testing/Private/RequestParser.hpp>

namespace corvane::testing {

/// One accepted connection: requests in, answers out, one exchange at a time. Lives on the server's thread
/// and never blocks; the engine tells it when its socket is ready.
class LoopbackConnection {
  public:
    /// Answers requests.
    class Host {
      public:
        virtual ~Host() = default;
        virtual LoopbackResponse answer(const LoopbackRequest& request, std::uint64_t exchange) = 0;
    };

    /// `firstFault` replaces the fault of the first answer.
    LoopbackConnection(FileDescriptor socket, std::uint64_t number, LoopbackFault firstFault, Host& host);

    [[nodiscard]] int descriptor() const noexcept { return socket_.get(); }

    /// What to poll the socket for, as epoll names it.
    [[nodiscard]] std::uint32_t interest() const noexcept;

    /// Whether the connection has ended and is to be destroyed, which closes the socket.
    [[nodiscard]] bool isOver() const noexcept { return isOver_; }

    /// Whether it was kept open after an answer and nothing has come since.
    [[nodiscard]] bool isKept() const noexcept {
        return exchange_ > 0 && !isAnswering_ && output_.empty() && parser_.buffered() == 0;
    }

    void becameReadable();

    void becameWritable() { flush(); }

    /// The exchange under way is the one with this number and has been held back.
    [[nodiscard]] bool isHolding(std::uint64_t exchange) const noexcept { return isHeld_ && exchange_ == exchange; }

    /// Sends bytes of the exchange that is held back, which goes on.
    void sendPiece(const std::string& bytes);

    /// Calls `observer` once the output is written, never when the connection ends before.
    void whenWritten(std::function<void()> observer);

    /// Sends the last bytes of that exchange and goes on with the requests that came in meanwhile.
    void endExchange(const LoopbackScript& script);

    /// Closes our side in order when the output is written.
    void closeInOrder() { play({{}, LoopbackScript::Ending::close}); }

  private:
    void play(const LoopbackScript& script);
    void readRequests();
    void flush();

    FileDescriptor socket_;
    std::uint64_t number_;
    LoopbackFault firstFault_;
    Host& host_;
    RequestParser parser_;
    std::string output_;
    /// How much of the output is written.
    std::size_t written_ = 0;
    std::vector<std::function<void()>> writeObservers_;
    std::uint64_t exchange_ = 0;
    /// What to do when the output is written.
    LoopbackScript::Ending ending_ = LoopbackScript::Ending::keepAlive;
    bool isAnswering_ = false;
    bool isHeld_ = false;
    /// Our side is closed; what still comes in is thrown away until the client closes its side, because
    /// closing with unread input would reset the connection and could destroy the answer on its way (RFC
    /// 9112, 9.6).
    bool isLingering_ = false;
    bool inputHasEnded_ = false;
    bool isOver_ = false;
};

}  // namespace corvane::testing
