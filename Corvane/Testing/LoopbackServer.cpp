#include <utility>

#include <Corvane/Testing/LoopbackServer.hpp>
#include <Corvane/Testing/Private/LoopbackEngine.hpp>

namespace corvane::testing {

LoopbackServer::LoopbackServer()
    : engine_(std::make_shared<LoopbackEngine>()), thread_([engine = engine_] { engine->run(); }) {}

LoopbackServer::~LoopbackServer() {
    engine_->stop();
    thread_.join();
}

std::uint16_t LoopbackServer::port() const noexcept {
    return engine_->port();
}

std::string LoopbackServer::url(std::string_view target, std::string_view host) const {
    return "http://" + std::string(host) + ':' + std::to_string(port()) + std::string(target);
}

void LoopbackServer::route(std::string method, std::string path, Handler handler) {
    engine_->routes().add(std::move(method), std::move(path), std::move(handler));
}

void LoopbackServer::route(std::string method, std::string path, LoopbackResponse response) {
    route(std::move(method), std::move(path),
          [response = std::move(response)](const LoopbackRequest&) { return response; });
}

void LoopbackServer::failNextConnection(LoopbackFault fault) {
    engine_->failNextConnection(fault);
}

void LoopbackServer::refuseConnections() {
    engine_->setListening(false);
}

void LoopbackServer::acceptConnections() {
    engine_->setListening(true);
}

void LoopbackServer::closeIdleConnections() {
    engine_->closeIdleConnections();
}

std::vector<LoopbackRequest> LoopbackServer::requests() const {
    return engine_->log().requests();
}

std::size_t LoopbackServer::requestCount() const {
    return engine_->log().requestCount();
}

std::size_t LoopbackServer::connectionsAccepted() const {
    return engine_->log().connectionsAccepted();
}

std::size_t LoopbackServer::connectionsOpen() const {
    return engine_->log().connectionsOpen();
}

bool LoopbackServer::waitForRequests(std::size_t count, std::chrono::milliseconds patience) const {
    return engine_->log().waitForRequests(count, patience);
}

bool LoopbackServer::waitForOpenConnections(std::size_t count, std::chrono::milliseconds patience) const {
    return engine_->log().waitForOpenConnections(count, patience);
}

std::optional<LoopbackExchange> LoopbackServer::waitForHeldExchange(std::chrono::milliseconds patience) {
    return engine_->log().waitForHeldExchange(patience);
}

}  // namespace corvane::testing
