#pragma once

#include <memory>
#include <optional>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>

#include "Origin.hpp"

/// The whole call as an application makes it on its main thread: a fresh request and a task for each download,
/// the outcome delivered to the main queue.
class CorvaneClient {
  public:
    std::size_t get(std::size_t document) {
        start(requests_.at(document));
        return size_;
    }

    int getConditionally() {
        corvane::URLRequest request = requests_.at(0);
        request.setValue(std::string(NginxOrigin::lastModified), "If-Modified-Since");
        start(request);
        return status_;
    }

    void getMany(std::size_t document, std::size_t total) {
        document_ = document;
        toStart_ = total;
        toFinish_ = total;
        for (std::size_t i = 0; i < 64; ++i)
            startOneOfMany();
        while (toFinish_ > 0)
            corvane::RunLoop::main().runOnce();
    }

  private:
    static std::shared_ptr<corvane::URLSession> makeSession() {
        corvane::URLSessionConfiguration configuration = corvane::URLSessionConfiguration::ephemeral();
        configuration.maximumConnectionsPerHost = 64;
        return corvane::URLSession::make(configuration, nullptr, corvane::DispatchQueue::main());
    }

    static corvane::URLRequest requestFor(std::size_t document) {
        return corvane::URLRequest(corvane::URL::parse(documentURL(document)).value());
    }

    void start(const corvane::URLRequest& request) {
        bool isDone = false;
        session_
            ->dataTask(request,
                       [this, &isDone](std::optional<corvane::Data> data,
                                       std::shared_ptr<const corvane::HTTPURLResponse> response,
                                       std::optional<corvane::PlatformError> error) {
                           require(!error, "Corvane");
                           size_ = data ? data->size() : 0;
                           status_ = response->statusCode();
                           isDone = true;
                       })
            ->resume();
        while (!isDone)
            corvane::RunLoop::main().runOnce();
    }

    void startOneOfMany() {
        if (toStart_ == 0) return;
        --toStart_;
        session_
            ->dataTask(requests_.at(document_),
                       [this](std::optional<corvane::Data> data, std::shared_ptr<const corvane::HTTPURLResponse>,
                              std::optional<corvane::PlatformError> error) {
                           require(!error && data && data->size() == documentSizes.at(document_), "Corvane's body");
                           --toFinish_;
                           startOneOfMany();
                       })
            ->resume();
    }

    std::shared_ptr<corvane::URLSession> session_ = makeSession();
    std::array<corvane::URLRequest, 2> requests_{requestFor(0), requestFor(1)};
    std::size_t size_ = 0;
    int status_ = 0;
    std::size_t document_ = 0;
    std::size_t toStart_ = 0;
    std::size_t toFinish_ = 0;
};
