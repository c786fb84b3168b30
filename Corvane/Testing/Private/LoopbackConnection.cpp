#include <sys/epoll.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include <Corvane/Testing/Private/LoopbackConnection.hpp>

namespace corvane::testing {

using Ending = LoopbackScript::Ending;

LoopbackConnection::LoopbackConnection(FileDescriptor socket, std::uint64_t number, LoopbackFault firstFault,
                                       Host& host)
    : socket_(std::move(socket)), number_(number), firstFault_(firstFault), host_(host) {}

std::uint32_t LoopbackConnection::interest() const noexcept {
    const bool hasOutput = !output_.empty() || ending_ == Ending::endlessHeaders;
    return (inputHasEnded_ ? 0U : static_cast<std::uint32_t>(EPOLLIN)) |
           (hasOutput ? static_cast<std::uint32_t>(EPOLLOUT) : 0U);
}

void LoopbackConnection::becameReadable() {
    char bytes[64 * 1024];
    const ssize_t count = ::recv(socket_.get(), bytes, sizeof bytes, 0);
    if (count < 0) {
        isOver_ = errno != EAGAIN && errno != EINTR;
        return;
    }
    if (count == 0) {
        // No client of ours closes its side while it still waits for an answer: this one has hung up.
        inputHasEnded_ = true;
        isOver_ = output_.empty() || isHeld_;
        return;
    }
    if (isLingering_) return;
    if (firstFault_ == LoopbackFault::resetBeforeHeaders || firstFault_ == LoopbackFault::closeBeforeHeaders) {
        play(scriptOf({.fault = firstFault_}, {}));
        return;
    }
    parser_.append({bytes, static_cast<std::size_t>(count)});
    readRequests();
}

void LoopbackConnection::readRequests() {
    while (!isAnswering_ && ending_ == Ending::keepAlive) {
        switch (parser_.advance()) {
            case RequestParser::Progress::incomplete:
                return;
            case RequestParser::Progress::expectsContinue:
                output_ += LoopbackResponse{.status = 100}.head();
                flush();
                return;
            case RequestParser::Progress::malformed:
                play(scriptOf({.status = parser_.rejection(), .framing = LoopbackResponse::Framing::untilClose}, {}));
                return;
            case RequestParser::Progress::complete:
                break;
        }
        LoopbackRequest request = parser_.takeRequest();
        request.connection = number_;
        isAnswering_ = true;
        LoopbackResponse response = host_.answer(request, ++exchange_);
        if (const LoopbackFault fault = std::exchange(firstFault_, LoopbackFault::none); fault != LoopbackFault::none) {
            response.fault = fault;
            response.isHeld = false;
        }
        isHeld_ = response.isHeld;
        if (isHeld_) return;
        play(scriptOf(response, request));
    }
}

void LoopbackConnection::sendPiece(const std::string& bytes) {
    output_ += bytes;
    flush();
}

void LoopbackConnection::whenWritten(std::function<void()> observer) {
    writeObservers_.push_back(std::move(observer));
    flush();
}

void LoopbackConnection::endExchange(const LoopbackScript& script) {
    play(script);
    if (!isOver_) readRequests();
}

void LoopbackConnection::play(const LoopbackScript& script) {
    output_ += script.bytes;
    ending_ = script.ending;
    isHeld_ = false;
    isAnswering_ = ending_ != Ending::keepAlive;
    flush();
}

void LoopbackConnection::flush() {
    while (!isOver_) {
        if (output_.empty() && ending_ == Ending::endlessHeaders) {
            for (int line = 0; line < 64; ++line)
                output_ += "X-Endless: and another line of the header section\r\n";
        }
        if (output_.empty()) break;
        const ssize_t count = ::send(socket_.get(), output_.data() + written_, output_.size() - written_, MSG_NOSIGNAL);
        if (count < 0) {
            isOver_ = errno != EAGAIN && errno != EINTR;
            return;
        }
        written_ += static_cast<std::size_t>(count);
        if (written_ == output_.size()) {
            output_.clear();
            written_ = 0;
        }
    }
    if (isOver_) return;
    for (const auto& observer : std::exchange(writeObservers_, {}))
        observer();
    if (isLingering_) return;
    if (ending_ == Ending::reset) {
        // With a linger time of zero, close() discards what is queued and resets the connection.
        const linger immediately{.l_onoff = 1, .l_linger = 0};
        ::setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &immediately, sizeof immediately);
        isOver_ = true;
    } else if (ending_ == Ending::close) {
        ::shutdown(socket_.get(), SHUT_WR);
        isLingering_ = true;
    }
    isOver_ = isOver_ || inputHasEnded_;
}

}  // namespace corvane::testing
