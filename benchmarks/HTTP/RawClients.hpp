#pragma once

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Origin.hpp"

/// The limit: a socket, a prepared request and a count of bytes. It learns the length of each answer once.
class RawClient {
  public:
    RawClient() : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(origin().port(NginxOrigin::Endpoint::http));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        require(::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, "connect");
        const int yes = 1;
        ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        for (std::size_t document = 0; document < documentSizes.size(); ++document) {
            send(document);
            answerSizes_.at(document) = receiveHead() + documentSizes.at(document);
            receiveRest(answerSizes_.at(document));
        }
        send(0, true);
        conditionalSize_ = receiveHead();
    }

    ~RawClient() { ::close(socket_); }

    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    std::size_t get(std::size_t document) {
        send(document);
        received_ = 0;
        receiveRest(answerSizes_.at(document));
        return documentSizes.at(document);
    }

    int getConditionally() {
        send(0, true);
        received_ = 0;
        receiveRest(conditionalSize_);
        return std::atoi(buffer_.data() + 9);
    }

    void send(std::size_t document, bool isConditional = false) {
        std::string request = "GET " + documentPaths.at(document) + " HTTP/1.1\r\nHost: 127.0.0.1\r\nAccept: */*\r\n";
        if (isConditional) request.append("If-Modified-Since: ").append(NginxOrigin::lastModified).append("\r\n");
        request += "\r\n";
        require(::send(socket_, request.data(), request.size(), 0) == static_cast<ssize_t>(request.size()), "send");
    }

    /// Reads once without blocking; true when the answer is complete.
    bool receiveOnce(std::size_t document) {
        const ssize_t count = ::recv(socket_, buffer_.data() + received_, buffer_.size() - received_, MSG_DONTWAIT);
        if (count > 0) received_ += static_cast<std::size_t>(count);
        if (received_ < answerSizes_.at(document)) return false;
        received_ = 0;
        return true;
    }

    [[nodiscard]] int descriptor() const { return socket_; }

  private:
    std::size_t receiveHead() {
        received_ = 0;
        while (true) {
            receiveRest(received_ + 1);
            const std::size_t end = std::string_view(buffer_.data(), received_).find("\r\n\r\n");
            if (end != std::string_view::npos) return end + 4;
        }
    }

    void receiveRest(std::size_t total) {
        while (received_ < total) {
            const ssize_t count = ::recv(socket_, buffer_.data() + received_, buffer_.size() - received_, 0);
            require(count > 0, "receive");
            received_ += static_cast<std::size_t>(count);
        }
    }

    int socket_;
    std::vector<char> buffer_ = std::vector<char>(std::size_t{512} * 1024);
    std::size_t received_ = 0;
    std::array<std::size_t, 2> answerSizes_{};
    std::size_t conditionalSize_ = 0;
};

/// The limit of many requests at once: as many raw sockets, one epoll.
class RawEpoll {
  public:
    static constexpr std::size_t inFlight = 64;

    RawEpoll() {
        for (std::size_t i = 0; i < inFlight; ++i) {
            clients_.push_back(std::make_unique<RawClient>());
            epoll_event event{.events = EPOLLIN, .data = {.u64 = i}};
            ::epoll_ctl(poll_, EPOLL_CTL_ADD, clients_.back()->descriptor(), &event);
        }
    }

    ~RawEpoll() { ::close(poll_); }

    RawEpoll(const RawEpoll&) = delete;
    RawEpoll& operator=(const RawEpoll&) = delete;

    void getMany(std::size_t document, std::size_t total) {
        std::size_t started = 0;
        for (; started < inFlight; ++started)
            clients_[started]->send(document);
        for (std::size_t done = 0; done < total;) {
            epoll_event events[inFlight];
            const int count = ::epoll_wait(poll_, events, inFlight, -1);
            for (int i = 0; i < count; ++i) {
                RawClient& client = *clients_[events[i].data.u64];
                if (!client.receiveOnce(document)) continue;
                ++done;
                if (started >= total) continue;
                ++started;
                client.send(document);
            }
        }
    }

  private:
    std::vector<std::unique_ptr<RawClient>> clients_;
    int poll_ = ::epoll_create1(0);
};
