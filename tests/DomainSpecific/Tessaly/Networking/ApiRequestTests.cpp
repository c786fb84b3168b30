#include <array>
#include <barrier>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/ApiResponse.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpResponse.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>

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
}

TEST(SimpleHttpRequest, SendsTheValidatorUnchanged) {
    const std::string odd = "sat, 1 Jan 2000 00:00:00 +0100 ";
    const auto request = SimpleHttpRequest::make({.ifModifiedSince = odd, .url = address})->urlRequest();
    ASSERT_TRUE(request);
    const std::vector<HTTPHeaderField> expected = {{"If-Modified-Since", odd}};
    EXPECT_EQ(request->headerFields(), expected);
}

TEST(ApiRequest, MakesItsSimpleRequestFromItsFields) {
    const auto request = ApiRequest::make({.url = address,
                                           .description = "fixtures",
                                           .payload = Data("[]"),
                                           .ifModifiedSince = "then",
                                           .options = DataLoadOptions(6),
                                           .cachePeriod = 30.0});
    const auto simple = request->simpleHttpRequest();
    EXPECT_EQ(simple->url(), address);
    EXPECT_EQ(simple->description(), "fixtures");
    EXPECT_EQ(simple->payload(), Data("[]"));
    EXPECT_EQ(simple->ifModifiedSince(), "then");
    EXPECT_FALSE(simple->isEphemeral());

    const auto get = ApiRequest::make({.url = address, .usePost = true})->simpleHttpRequest()->urlRequest();
    ASSERT_TRUE(get);
    EXPECT_EQ(get->httpMethod(), "GET") << "the method follows the payload";
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

TEST(ApiResponse, CopiesEverythingButTheBodyFromAnotherResponse) {
    const SimpleHttpResponse received(
        nullptr, Data("received"),
        std::make_shared<const HTTPURLResponse>(address, 304, "HTTP/1.1",
                                                std::vector<HTTPHeaderField>{{"Last-Modified", "then"}}),
        std::nullopt);
    const ApiResponse first(Data("cached"), received);
    const DataProviderResponse& anyResponse = first;
    const ApiResponse second(Data("decoded"), anyResponse);
    EXPECT_EQ(first.data(), Data("cached"));
    EXPECT_EQ(second.data(), Data("decoded"));
    for (const ApiResponse& copy : {first, second}) {
        EXPECT_EQ(copy.lastModified(), "then");
        EXPECT_TRUE(copy.isNotModified());
        EXPECT_EQ(copy.statusCode(), 304);
        EXPECT_FALSE(copy.error());
    }

    const ApiResponse failed(SimpleHttpResponse::Errors::emptyData(), 500);
    EXPECT_FALSE(failed.data() || failed.lastModified() || failed.isNotModified());
    EXPECT_EQ(failed.statusCode(), 500);
    ASSERT_TRUE(failed.error());
    EXPECT_EQ(ApiResponse(std::nullopt, failed).error()->code(), 99999);
}

}  // namespace
}  // namespace corvane
