#pragma once

#include <future>

#include "SessionFixture.hpp"

namespace corvane {

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

/// A session whose tasks complete exactly once: proved at the end of every test, when the session is over.
class FaultTest : public SessionTest {
  protected:
    FaultTest() { useConfiguration(URLSessionConfiguration::ephemeral()); }

    ~FaultTest() override { EXPECT_EQ(witness_, nullptr) << "TearDown did not run"; }

    void useConfiguration(const URLSessionConfiguration& configuration,
                          std::shared_ptr<InvalidationWitness> witness = std::make_shared<InvalidationWitness>()) {
        endSession();
        witness_ = std::move(witness);
        session = URLSession::make(configuration, witness_);
    }

    void TearDown() override { endSession(); }

    std::shared_ptr<URLSessionDataTask> start(URLRequest asked) {
        auto task = session->dataTask(std::move(asked), completions.handler());
        ++expected_;
        task->resume();
        return task;
    }

    Completion loadOne(URLRequest asked) {
        start(std::move(asked));
        return waitForAll();
    }

    /// Waits until every task that was started has completed, and gives the last completion.
    Completion waitForAll() { return completions.wait(expected_); }

    /// One of a task that `start` did not make.
    void expectOneMore() { ++expected_; }

    Completions completions;

  private:
    void endSession() {
        if (witness_ == nullptr) return;
        session->finishTasksAndInvalidate();
        witness_->wait();
        session.reset();
        witness_.reset();
        EXPECT_EQ(completions.all().size(), expected_);
    }

    std::shared_ptr<InvalidationWitness> witness_;
    std::size_t expected_ = 0;
};

}  // namespace corvane
