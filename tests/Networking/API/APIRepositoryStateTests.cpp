#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include <Corvane/Networking/API/APIRepositoryState.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using State = detail::APIRepositoryState<int>;

/// Asks for a model and fetches it on the spot if asked to; tells where it came from.
FetchResultMetadata ask(State& state, bool useCache, State::Result fetched = std::make_shared<int>(1)) {
    FetchResultMetadata answer;
    const bool fetches = state.admit(useCache, [&answer](const auto&, const auto& metadata) { answer = metadata; });
    const auto next = fetches ? state.finishFetch(useCache, fetched) : std::nullopt;
    EXPECT_EQ(next, std::nullopt);
    return answer;
}

const State::Result failure = std::unexpected(PlatformError("D", 1));

TEST(APIRepositoryState, AnswersFromTheCacheAsItsPeriodsAllow) {
    const std::tuple<double, bool, bool> rows[] = {{9.5, false, true}, {10, false, false},  {10, true, true},
                                                   {60, true, true},   {60.5, true, false}, {60.5, false, false}};
    for (const auto& [age, useCache, isServed] : rows) {
        testing::VirtualClock clock(Date(std::chrono::seconds(1700000000)));
        State state(60, 10);
        EXPECT_EQ(ask(state, false), (FetchResultMetadata{false, false, 1700000000}));
        clock.advance(age);
        EXPECT_EQ(ask(state, useCache),
                  (FetchResultMetadata{useCache, isServed, isServed ? 1700000000 : 1700000000 + age}));
    }
    EXPECT_FALSE(APIRepositoryCache(std::make_shared<const int>(1)).isNewLaid());
    EXPECT_FALSE(APIRepositoryCache(std::make_shared<const int>(1)).isOutdated());
}

TEST(APIRepositoryState, AnswersAllWhoWaitWithTheOneFetchTheLatestFirst) {
    State state(60, 0);
    std::string order;
    const auto asking = [&](char who) { return [&order, who](const auto&, const auto&) { order += who; }; };
    EXPECT_TRUE(state.admit(false, asking('1')));
    EXPECT_FALSE(state.admit(true, asking('2')));
    EXPECT_FALSE(state.admit(true, nullptr));
    EXPECT_FALSE(state.admit(true, [&](const auto&, const FetchResultMetadata& metadata) {
        EXPECT_FALSE(metadata.cachedDataRequested) << "the one that started the fetch did not ask for it";
        order += '3';
        EXPECT_FALSE(state.admit(false, asking('4'))) << "answered by the fetch that is being told about";
        EXPECT_FALSE(state.admit(true, asking('5'))) << "answered by the cache";
    }));
    EXPECT_EQ(state.finishFetch(false, std::make_shared<int>(1)), std::nullopt);
    EXPECT_EQ(order, "35421");
    EXPECT_TRUE(state.admit(false, asking('6'))) << "the next one starts another fetch";
}

TEST(APIRepositoryState, AnswersNobodyAfterAnUpdateWithWhatWasFetchedBefore) {
    State state(60, 60);
    std::vector<int> models;
    const auto asking = [&](const State::Result& result, const auto&) { models.push_back(**result); };
    EXPECT_TRUE(state.admit(false, asking));
    EXPECT_FALSE(state.admit(false, [&](const auto&, const auto&) {
        state.update(true);
        EXPECT_FALSE(state.admit(true, asking));
        EXPECT_FALSE(state.admit(false, asking));
    }));
    EXPECT_EQ(state.finishFetch(false, std::make_shared<int>(1)), true)
        << "the first of those who wait wants it cached";
    EXPECT_EQ(models, std::vector{1});
    EXPECT_FALSE(state.admit(true, asking)) << "one fetch at a time";
    EXPECT_EQ(state.finishFetch(true, std::make_shared<int>(2)), std::nullopt);
    EXPECT_EQ(models, (std::vector{1, 2, 2, 2}));
}

TEST(APIRepositoryState, KeepsTheModelThroughAFailureAndLosesItByFlushing) {
    State state(60, 0);
    EXPECT_EQ(ask(state, true, failure).cacheCreationTimestamp, std::nullopt);
    const auto made = ask(state, true).cacheCreationTimestamp;
    EXPECT_EQ(ask(state, false, failure), (FetchResultMetadata{false, false, made}));
    EXPECT_TRUE(ask(state, true).cachedDataReturned);
    state.update(true);
    EXPECT_EQ(ask(state, true, failure), (FetchResultMetadata{true, false, std::nullopt}));
}

}  // namespace
}  // namespace corvane
