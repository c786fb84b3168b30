#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpResponse.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>

namespace corvane {
namespace {

const URL address = *URL::parse("http://localhost/fixtures?day=3");

std::shared_ptr<const HTTPURLResponse> head(int status, std::vector<HTTPHeaderField> fields = {}) {
    return std::make_shared<const HTTPURLResponse>(address, status, "HTTP/1.1", std::move(fields));
}

TEST(SimpleHttpResponse, TakesAMissingBodyForAnErrorUnlessNothingWasModified) {
    for (const int status : {0, 199, 200, 204, 304, 404, 503, 600}) {
        for (const auto& body : {std::optional<Data>(), {Data("")}, {Data("{}")}}) {
            SCOPED_TRACE(status);
            const bool isAbsent = !body || body->empty();
            const SimpleHttpResponse response(nullptr, body, head(status), std::nullopt);
            EXPECT_EQ(response.statusCode(), status);
            EXPECT_EQ(response.isNotModified(), status == 304);
            EXPECT_EQ(response.error().has_value(), isAbsent && status != 304);
            EXPECT_EQ(response.data(), isAbsent ? std::nullopt : body);
            EXPECT_EQ(response.urlString(), std::nullopt);
        }
    }
}

TEST(SimpleHttpResponse, PassesATransportErrorOnAndIgnoresTheHead) {
    const PlatformError lost("URLErrorDomain", -1005);
    const auto request = SimpleHttpRequest::make({.url = address});
    const SimpleHttpResponse response(request.get(), Data("half"), head(304, {{"Last-Modified", "then"}}), lost);
    ASSERT_TRUE(response.error());
    EXPECT_EQ(*response.error()->as<PlatformError>(), lost);
    EXPECT_EQ(response.statusCode(), std::nullopt);
    EXPECT_FALSE(response.isNotModified());
    EXPECT_EQ(response.lastModified(), std::nullopt);
    EXPECT_EQ(response.urlString(), std::nullopt);
    EXPECT_EQ(response.data(), Data("half"));
}

TEST(SimpleHttpResponse, FindsLastModifiedByItsExactNameAndNamesTheURLThatWasAskedFor) {
    const std::string date = "Sat,  21 nov 2026 15:00:00 +0000";  // No valid date: it is passed on all the same.
    const auto request = SimpleHttpRequest::make({.url = address});
    for (const char* const field : {"Last-Modified", "last-modified", "LAST-MODIFIED", "Last-Modified2"}) {
        const SimpleHttpResponse response(request.get(), Data("{}"), head(200, {{field, date}}), std::nullopt);
        EXPECT_EQ(response.lastModified() == date, field == std::string("Last-Modified")) << field;
        EXPECT_EQ(response.urlString(), "http://localhost/fixtures?day=3");
    }
    const auto withoutURL = SimpleHttpRequest::make({});
    EXPECT_EQ(SimpleHttpResponse(withoutURL.get(), Data("{}"), head(200), std::nullopt).urlString(), std::nullopt);
}

}  // namespace
}  // namespace corvane
