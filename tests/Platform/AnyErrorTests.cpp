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

TEST(AnyError, MakesUpWhatTheErrorDoesNotOffer) {
    const AnyError error = PlainFault{};
    EXPECT_EQ(error.domain(), "corvane::PlainFault");
    EXPECT_EQ(error.code(), 1);
    EXPECT_EQ(error.description(), "plain");
    EXPECT_EQ(error.localizedDescription(), "The operation couldn’t be completed. (corvane::PlainFault error 1.)");
}

TEST(AnyError, TakesTheErrorsOwnTextDomainAndCode) {
    EXPECT_EQ(AnyError(TalkingFault{"told"}).localizedDescription(), "told");
    EXPECT_EQ(AnyError(TalkingFault{}).localizedDescription(),
              "The operation couldn’t be completed. (corvane::TalkingFault error 7.)");

    const AnyError error = PlatformError("URLErrorDomain", -1009, "Offline.");
    EXPECT_EQ(error.domain(), "URLErrorDomain");
    EXPECT_EQ(error.code(), -1009);
    EXPECT_EQ(error.localizedDescription(), "Offline.");
    EXPECT_EQ(error.description(), "Error Domain=URLErrorDomain Code=-1009 \"Offline.\"");
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
