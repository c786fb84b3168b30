#include <array>
#include <barrier>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>

namespace corvane {
namespace {

const URL address = *URL::parse("http://localhost/fixtures");

TEST(SimpleHttpRequest, BecomesAPostExactlyWhenItHasAPayload) {
    const auto get = SimpleHttpRequest::make({.url = address})->urlRequest();
    ASSERT_TRUE(get);
    EXPECT_EQ(get->httpMethod(), "GET");
    EXPECT_EQ(get->httpBody(), std::nullopt);
    EXPECT_EQ(get->cachePolicy(), URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData);
    EXPECT_EQ(get->timeoutInterval(), 30.0);
    EXPECT_TRUE(get->headerFields().empty());

    for (const Data& payload : {Data("{\"a\":1}"), Data("")}) {
        const auto post = SimpleHttpRequest::make({.url = address, .payload = payload})->urlRequest();
        ASSERT_TRUE(post);
        EXPECT_EQ(post->httpMethod(), "POST");
        EXPECT_EQ(post->httpBody(), payload);
    }
    EXPECT_EQ(SimpleHttpRequest::make({.payload = Data("{}")})->urlRequest(), std::nullopt);
    const auto posting = ApiRequest::make({.url = address, .usePost = true})->simpleHttpRequest();
    EXPECT_EQ(posting->urlRequest()->httpMethod(), "GET") << "the method follows the payload";
}

TEST(ApiRequest, MakesItsSimpleRequestOnceForAllThreads) {
    for (int round = 0; round < 20; ++round) {
        const auto request = ApiRequest::make({.url = address});
        std::array<std::shared_ptr<const SimpleHttpRequest>, 4> seen;
        std::barrier start(static_cast<std::ptrdiff_t>(seen.size()));
        std::vector<std::jthread> threads;
        for (auto& mine : seen) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                mine = request->simpleHttpRequest();
            });
        }
        threads.clear();
        for (const auto& one : seen)
            EXPECT_EQ(one, request->simpleHttpRequest());
    }
}

}  // namespace
}  // namespace corvane
