#include <string>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/RequestRules.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Platform/HTTP/URLSessionConfiguration.hpp>

namespace corvane::http {
namespace {

URLRequest request(std::string_view url = "http://h/") {
    return URLRequest(*URL::parse(url));
}

const std::vector<std::string> originBound = URLSessionConfiguration::defaultConfiguration().originBoundFields;

TEST(RequestRules, SayWhatKeepsARequestFromBeingSent) {
    EXPECT_FALSE(problem(request()));
    EXPECT_FALSE(problem(request("https://h/" + std::string(60'000, 'x'))));

    const auto with = [](auto change) {
        auto r = request();
        change(r);
        return problem(r);
    };

    const struct {
        std::optional<PlatformError> found;
        URLError code;
        std::string_view says;
    } cases[] = {
        {problem(request("ftp://h/")), URLError::unsupportedURL, "\"ftp\""},
        {problem(request("file:///etc/passwd")), URLError::unsupportedURL, "\"file\""},
        {problem(request("http://h/" + std::string(70'000, 'x'))), URLError::badURL, "64 KiB"},
        {with([](auto& r) { r.setHttpMethod("GE T"); }), URLError::badURL, "\"GE T\""},
        {with([](auto& r) { r.setHttpMethod(""); }), URLError::badURL, "method"},
        {with([](auto& r) { r.setHttpMethod("GET\r\nX: y"); }), URLError::badURL, "GET??X: y"},
        {with([](auto& r) { r.setHttpMethod("CONNECT"); }), URLError::badURL, "CONNECT"},
        {with([](auto& r) { r.setValue("a\r\nX: y", "Accept"); }), URLError::badURL, "\"Accept\""},
        {with([](auto& r) { r.setValue(std::string("a\0b", 3), "Accept"); }), URLError::badURL, "\"Accept\""},
        {with([](auto& r) { r.setValue("a", "Acc ept"); }), URLError::badURL, "\"Acc ept\""},
        {with([](auto& r) { r.setValue("a", "A:\n"); }), URLError::badURL, "\"A:?\""},
        {with([](auto& r) { r.setCachePolicy(URLRequestCachePolicy::returnCacheDataDontLoad); }),
         URLError::resourceUnavailable, "cache"},
    };

    for (const auto& [found, code, says] : cases) {
        ASSERT_TRUE(found) << says;
        EXPECT_TRUE(*found == code) << found->description();
        EXPECT_NE(found->localizedDescription().find(says), std::string::npos) << found->localizedDescription();
    }
}

TEST(RequestRules, ChangeTheMethodAsTheStatusHasItAndKeepSecretsWithinTheirOrigin) {
    const struct {
        int status;
        const char* method;
        const char* next;
        bool keepsBody = true;
        const char* location = "/b";
        bool keepsSecrets = true;
    } cases[] = {
        {301, "POST", "GET", false},
        {302, "POST", "GET", false},
        {303, "POST", "GET", false},
        {307, "POST", "POST"},
        {308, "POST", "POST"},
        {301, "PUT", "PUT"},
        {302, "DELETE", "DELETE"},
        {303, "PUT", "GET", false},
        {303, "HEAD", "HEAD"},
        {302, "GET", "GET", true, "https://h:443/b"},
        {302, "GET", "GET", true, "https://H/b"},
        {302, "GET", "GET", true, "http://h/b", false},
        {302, "GET", "GET", true, "https://h:444/", false},
        {302, "GET", "GET", true, "//other/b", false},
        {302, "GET", "GET", true, "https://h.other/", false},
    };

    for (const auto& each : cases) {
        SCOPED_TRACE(std::to_string(each.status) + each.method + each.location);
        auto r = request("https://h/a");
        r.setHttpMethod(each.method);
        r.setHttpBody(Data(std::string_view("x")));
        for (const char* const field : {"Authorization", "Cookie", "Host", "Content-Type", "X-Day"})
            r.setValue("a", field);
        const auto next = redirected(r, each.status, each.location, originBound);
        ASSERT_TRUE(next);
        EXPECT_EQ(next->httpMethod(), each.next);
        EXPECT_EQ(next->httpBody().has_value(), each.keepsBody);
        EXPECT_EQ(next->value("Content-Type").has_value(), each.keepsBody);
        for (const char* const field : {"Authorization", "Cookie", "Host"})
            EXPECT_EQ(next->value(field).has_value(), each.keepsSecrets) << field;
        EXPECT_EQ(next->value("X-Day"), "a");
    }
    for (const int status : {200, 300, 304, 305, 306, 309, 401})
        EXPECT_FALSE(isRedirect(status)) << status;
}

TEST(RequestRules, CarryTheFragmentOn) {
    EXPECT_EQ(redirected(request("http://h/a#f"), 302, "b", originBound)->url().absoluteString(), "http://h/b#f");
    EXPECT_EQ(redirected(request("http://h/a#f"), 302, "b#g", originBound)->url().absoluteString(), "http://h/b#g");
}

}  // namespace
}  // namespace corvane::http
