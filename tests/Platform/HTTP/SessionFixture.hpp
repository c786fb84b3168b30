#pragma once

#include <condition_variable>
#include <future>
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
    URLSession::CompletionHandler handler() {
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

/// Says when its session is over: no completion may come after that.
class InvalidationWitness : public URLSessionDelegate {
  public:
    void sessionDidBecomeInvalid(URLSession& /*session*/, std::optional<PlatformError> /*error*/) override {
        isOver_.set_value();
    }

    void wait() { isOver_.get_future().wait(); }

  private:
    std::promise<void> isOver_;
};

/// A session whose tasks complete exactly once: proved when the session is over, at the end of a test at the latest.
class SessionTest : public ::testing::Test {
  protected:
    SessionTest() { useConfiguration(URLSessionConfiguration::ephemeral()); }

    void useConfiguration(const URLSessionConfiguration& configuration,
                          std::shared_ptr<InvalidationWitness> witness = std::make_shared<InvalidationWitness>(),
                          std::shared_ptr<DispatchQueue> queue = nullptr) {
        TearDown();
        witness_ = std::move(witness);
        session = URLSession::make(configuration, witness_, std::move(queue));
    }

    void TearDown() override {
        if (witness_ == nullptr) return;
        session->finishTasksAndInvalidate();
        witness_->wait();
        session.reset();
        witness_.reset();
        EXPECT_EQ(completions.all().size(), expected);
    }

    [[nodiscard]] URLRequest request(std::string_view target, std::string_view host = "127.0.0.1") const {
        return URLRequest(*URL::parse(server.url(target, host)));
    }

    /// A task that has not been resumed yet.
    std::shared_ptr<URLSessionDataTask> make(URLRequest asked) {
        ++expected;
        return session->dataTask(std::move(asked), completions.handler());
    }

    std::shared_ptr<URLSessionDataTask> start(URLRequest asked) {
        auto task = make(std::move(asked));
        task->resume();
        return task;
    }

    /// Runs one request to its end, and all that were started before.
    Completion load(URLRequest asked) {
        start(std::move(asked));
        return waitForAll();
    }

    /// Runs one request to its end, whatever else there is.
    static Completion load(const std::shared_ptr<URLSession>& with, URLRequest asked) {
        Completions own;
        with->dataTask(std::move(asked), own.handler())->resume();
        return own.wait();
    }

    /// Waits until every task that was made has completed, and gives the last completion.
    Completion waitForAll() { return completions.wait(expected); }

    testing::LoopbackServer server;
    std::shared_ptr<URLSession> session;
    Completions completions;
    std::size_t expected = 0;

  private:
    std::shared_ptr<InvalidationWitness> witness_;
};

}  // namespace corvane
