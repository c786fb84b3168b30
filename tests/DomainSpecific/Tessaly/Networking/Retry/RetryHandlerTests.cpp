#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/RetryHandler.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

class RetryHandlerTest : public ::testing::Test {
  protected:
    void start(std::int64_t maximum, double interval) {
        handler = RetryHandler::make(maximum, interval);
        handler->start([this] { events += 'r'; }, [this] { events += 'm'; });
    }

    void recordAndWait() {
        handler->recordError();
        clock.advance(5);
    }

    testing::VirtualClock clock;
    std::shared_ptr<RetryHandler> handler;
    std::string events;
};

TEST_F(RetryHandlerTest, RetriesAtOnceUpToItsMaximum) {
    const std::pair<std::int64_t, std::string> rows[] = {{1, "rm"}, {3, "rrrm"}, {0, "rm"}, {-2, "rm"}};
    for (const auto& [maximum, expected] : rows) {
        events.clear();
        start(maximum, 0);
        for (int i = 0; i < 5; ++i)
            handler->recordError();
        EXPECT_EQ(events, expected) << maximum;
        EXPECT_FALSE(handler->isStarted());
    }
}

TEST_F(RetryHandlerTest, PostponesARetryAndOverlooksErrorsMeanwhile) {
    start(2, 5);
    handler->recordError();
    clock.advance(4);
    handler->recordError();
    EXPECT_TRUE(handler->isPostponedRetryScheduled() && events.empty());
    clock.advance(1);
    EXPECT_EQ(events, "r");
    recordAndWait();
    EXPECT_EQ(events, "rrm");
    start(1, -1);
    handler->recordError();
    EXPECT_EQ(events, "rrm") << "postponed, too";
    clock.advance(0.001);
    EXPECT_EQ(events, "rrmrm");
}

TEST_F(RetryHandlerTest, StopsAndCountsAnew) {
    handler = RetryHandler::make(2, 5);
    recordAndWait();
    handler->start([this] { events += 'r'; });
    handler->start(nullptr, [this] { events += 'm'; });
    recordAndWait();
    handler->recordError();
    handler->stop();
    clock.advance(60);
    EXPECT_EQ(events, "r");
    handler->start([this] { events += 'n'; });
    handler->recordError();
    handler->reset();
    clock.advance(60);
    EXPECT_EQ(events, "r");
    for (int i = 0; i < 3; ++i)
        recordAndWait();
    EXPECT_EQ(events, "rnnm") << "counted from zero, one callback replaced, the other kept";
}

TEST_F(RetryHandlerTest, MayEndInItsCallbacksAndWhilePostponed) {
    handler = RetryHandler::make(1, 5);
    handler->start([this] { handler.reset(); }, [this] { events += 'm'; });
    recordAndWait();
    EXPECT_EQ(events, "m");
    start(3, 5);
    handler->recordError();
    handler.reset();
    clock.advance(60);
    EXPECT_EQ(events, "m");
}

}  // namespace corvane
