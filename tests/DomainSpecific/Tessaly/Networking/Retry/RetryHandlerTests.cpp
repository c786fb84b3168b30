#include <cstdint>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/RetryHandler.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

class RetryHandlerTest : public ::testing::Test {
  protected:
    void start(std::int64_t maximum, double interval) {
        handler = RetryHandler::make(maximum, interval);
        handler->start([this] { events += 'r'; }, [this] { events += 'm'; });
    }

    testing::VirtualClock clock;
    std::shared_ptr<RetryHandler> handler;
    std::string events;
};

TEST_F(RetryHandlerTest, RetriesAtOnceUpToItsMaximum) {
    const struct {
        std::int64_t maximum;
        std::string events;
        std::int64_t count;
    } rows[] = {{1, "rm", 1}, {3, "rrrm", 3}, {0, "rm", 0}, {-2, "rm", -2}};

    for (const auto& row : rows) {
        SCOPED_TRACE(row.maximum);
        events.clear();
        start(row.maximum, 0);
        EXPECT_EQ(handler->isReachedMaxRetryAttempt(), row.maximum <= 0);
        EXPECT_FALSE(handler->isPostponedRetryEnabled());
        for (int i = 0; i < 5; ++i)
            handler->recordError();
        EXPECT_EQ(events, row.events);
        EXPECT_FALSE(handler->isStarted());
        EXPECT_EQ(handler->retryCounter().count(), row.count);
    }
}

TEST_F(RetryHandlerTest, PostponesARetryAndOverlooksErrorsMeanwhile) {
    start(2, 5);
    EXPECT_TRUE(handler->isPostponedRetryEnabled());
    handler->recordError();
    clock.advance(4);
    handler->recordError();
    EXPECT_TRUE(handler->isPostponedRetryScheduled());
    EXPECT_EQ(events, "");
    clock.advance(1);
    EXPECT_FALSE(handler->isPostponedRetryScheduled());
    EXPECT_EQ(events, "r");
    handler->recordError();
    clock.advance(5);
    EXPECT_EQ(events, "rrm");
    start(1, -1);
    handler->recordError();
    EXPECT_EQ(events, "rrm") << "postponed, too";
    clock.advance(0.001);
    EXPECT_EQ(events, "rrmrm");
}

TEST_F(RetryHandlerTest, StopsAndCountsAnew) {
    handler = RetryHandler::make(2, 5);
    handler->recordError();
    EXPECT_FALSE(handler->isPostponedRetryScheduled()) << "not started";
    handler->start([this] { events += 'r'; });
    handler->start(nullptr, [this] { events += 'm'; });
    handler->recordError();
    clock.advance(5);
    handler->recordError();
    handler->stop();
    clock.advance(60);
    EXPECT_EQ(events, "r");
    EXPECT_EQ(handler->retryCounter().count(), 1);

    handler->start();
    handler->recordError();
    handler->reset();
    EXPECT_TRUE(handler->isStarted());
    clock.advance(60);
    EXPECT_EQ(events, "r");
    EXPECT_EQ(handler->retryCounter().count(), 0);
    handler->start([this] { events += 'n'; });
    for (int i = 0; i < 3; ++i, clock.advance(5))
        handler->recordError();
    EXPECT_EQ(events, "rnnm") << "one callback replaced, the other kept";
}

TEST_F(RetryHandlerTest, MayEndInItsCallbacksAndWhilePostponed) {
    handler = RetryHandler::make(1, 5);
    handler->start([this] { handler.reset(); }, [this] { events += 'm'; });
    handler->recordError();
    clock.advance(5);
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(events, "m");

    start(3, 5);
    handler->recordError();
    handler.reset();
    clock.advance(60);
    EXPECT_EQ(events, "m");
}

}  // namespace
}  // namespace corvane
