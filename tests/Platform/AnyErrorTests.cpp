#include <gtest/gtest.h>

#include <Corvane/Platform/AnyError.hpp>

namespace corvane {

struct PlainFault {
    std::string description() const { return "plain"; }
};

struct TalkingFault {
    std::optional<std::string> text;

    std::string description() const { return "talking"; }

    std::optional<std::string> errorDescription() const { return text; }

    int code() const { return 7; }
};

namespace {

TEST(AnyError, TakesWhatTheErrorOffersAndMakesUpTheRest) {
    const struct {
        AnyError error;
        std::string domain;
        std::int64_t code;
        std::string description, localizedDescription;
    } cases[] = {
        {PlainFault{}, "corvane::PlainFault", 1, "plain",
         "The operation couldn’t be completed. (corvane::PlainFault error 1.)"},
        {TalkingFault{"told"}, "corvane::TalkingFault", 7, "talking", "told"},
        {TalkingFault{}, "corvane::TalkingFault", 7, "talking",
         "The operation couldn’t be completed. (corvane::TalkingFault error 7.)"},
        {PlatformError("URLErrorDomain", -1009, "Offline."), "URLErrorDomain", -1009,
         "Error Domain=URLErrorDomain Code=-1009 \"Offline.\"", "Offline."},
        {PlatformError("Invalid URL", 999), "Invalid URL", 999, "Error Domain=Invalid URL Code=999",
         "The operation couldn’t be completed. (Invalid URL error 999.)"},
    };

    for (const auto& each : cases) {
        EXPECT_EQ(each.error.domain(), each.domain);
        EXPECT_EQ(each.error.code(), each.code);
        EXPECT_EQ(each.error.description(), each.description);
        EXPECT_EQ(each.error.localizedDescription(), each.localizedDescription);
    }
    const PlatformError error("A", 1, "text");
    EXPECT_EQ(error, PlatformError("A", 1));
    EXPECT_NE(error, PlatformError("A", 2, "text"));
    EXPECT_NE(error, PlatformError("B", 1, "text"));
}

TEST(AnyError, GivesTheErrorBackByItsExactType) {
    AnyError error = TalkingFault{"told"};
    const AnyError moved = std::move(error);  // NOLINT(performance-move-const-arg)
    ASSERT_NE(moved.as<TalkingFault>(), nullptr);
    EXPECT_EQ(moved.as<TalkingFault>()->text, "told");
    EXPECT_EQ(moved.as<PlainFault>(), nullptr);
    EXPECT_EQ(moved.as<PlatformError>(), nullptr);
    // There is no empty error, not even a moved-from one.
    EXPECT_EQ(error.description(), "talking");  // NOLINT(bugprone-use-after-move)
}

TEST(AnyError, StandsInAnErrorThatCanItselfBeOne) {
    struct Outcome {
        explicit Outcome(AnyError reason) : cause(std::move(reason)) {}

        [[nodiscard]] std::string description() const { return "because " + cause.description(); }

        AnyError cause;
    };

    const Outcome outcome{AnyError(PlainFault{})};
    const auto capture = [outcome] { return AnyError(outcome); };
    EXPECT_EQ(capture().description(), "because plain");
}

}  // namespace
}  // namespace corvane
