#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/HTTP/URLSession.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {

using testing::LoopbackFault;
using testing::LoopbackRequest;
using testing::LoopbackResponse;

/// What a completion brought.
struct Completion {
    std::optional<Data> data;
    std::shared_ptr<const HTTPURLResponse> response;
    std::optional<PlatformError> error;

    [[nodiscard]] std::string body() const { return data ? std::string(data->text()) : "(none)"; }

    [[nodiscard]] int status() const { return response ? response->statusCode() : 0; }

    [[nodiscard]] std::int64_t code() const { return error ? error->code() : 0; }
};

/// Gathers the completions of any number of tasks, from any thread.
class Completions {
  public:
    [[nodiscard]] URLSession::CompletionHandler handler() {
        return [state = state_](std::optional<Data> data, std::shared_ptr<const HTTPURLResponse> response,
                                std::optional<PlatformError> error) {
            const std::lock_guard lock(state->mutex);
            state->list.push_back({std::move(data), std::move(response), std::move(error)});
            state->changed.notify_all();
        };
    }

    /// Waits until there are `count`, and gives the last.
    [[nodiscard]] Completion wait(std::size_t count = 1) const {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [&] { return state_->list.size() >= count; });
        return state_->list.back();
    }

    [[nodiscard]] std::vector<Completion> all() const {
        const std::lock_guard lock(state_->mutex);
        return state_->list;
    }

  private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<Completion> list;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

class SessionTest : public ::testing::Test {
  protected:
    [[nodiscard]] URLRequest request(std::string_view target, std::string_view host = "127.0.0.1") const {
        return URLRequest(*URL::parse(server.url(target, host)));
    }

    /// Runs one request to its end.
    [[nodiscard]] Completion load(URLRequest request) const { return load(session, std::move(request)); }

    [[nodiscard]] static Completion load(const std::shared_ptr<URLSession>& with, URLRequest request) {
        Completions completions;
        with->dataTask(std::move(request), completions.handler())->resume();
        return completions.wait();
    }

    testing::LoopbackServer server;
    std::shared_ptr<URLSession> session = URLSession::make(URLSessionConfiguration::ephemeral());
};

}  // namespace corvane
