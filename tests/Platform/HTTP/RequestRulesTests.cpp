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

TEST(RequestRules, ChangeTheMethodAsTheStatusHasIt) {
    const struct {
        int status;
        const char* method;
        const char* next;
        bool keepsBody;
    } cases[] = {
        {301, "POST", "GET", false},     {302, "POST", "GET", false},   {303, "POST", "GET", false},
        {307, "POST", "POST", true},     {308, "POST", "POST", true},   {301, "PUT", "PUT", true},
        {302, "DELETE", "DELETE", true}, {303, "PUT", "GET", false},    {303, "HEAD", "HEAD", true},
        {301, "GET", "GET", true},       {307, "PATCH", "PATCH", true},
    };

    for (const auto& [status, method, nextMethod, keepsBody] : cases) {
        auto r = request("http://h/a");
        r.setHttpMethod(method);
        r.setHttpBody(Data(std::string_view("x")));
        r.setValue("text/plain", "Content-Type");
        const auto next = redirected(r, status, "/b", originBound);
        ASSERT_TRUE(next);
        EXPECT_EQ(next->url().absoluteString(), "http://h/b");
        EXPECT_EQ(next->httpMethod(), nextMethod) << status << method;
        EXPECT_EQ(next->httpBody().has_value(), keepsBody) << status << method;
        EXPECT_EQ(next->value("Content-Type").has_value(), keepsBody) << status << method;
    }
    for (const int status : {200, 300, 304, 305, 306, 309, 401})
        EXPECT_FALSE(isRedirect(status)) << status;
}

TEST(RequestRules, KeepSecretsWithinTheirOrigin) {
    auto r = request("https://h/a");
    for (const char* const field : {"Authorization", "Cookie", "Host", "X-Day"})
        r.setValue("secret", field);

    const struct {
        const char* location;
        bool keeps;
    } cases[] = {
        {"/b", true},          {"https://h:443/b", true},   {"https://H/b", true},
        {"http://h/b", false}, {"https://h:444/", false},   {"https://other/", false},
        {"//other/b", false},  {"https://h.other/", false},
    };

    for (const auto& [location, keeps] : cases) {
        const auto next = redirected(r, 302, location, originBound);
        ASSERT_TRUE(next);
        for (const char* const field : {"Authorization", "Cookie", "Host"}) {
            EXPECT_EQ(next->value(field).has_value(), keeps) << location << ' ' << field;
        }
        EXPECT_EQ(next->value("X-Day"), "secret");
    }
}

TEST(RequestRules, CarryTheFragmentOn) {
    EXPECT_EQ(redirected(request("http://h/a#f"), 302, "b", originBound)->url().absoluteString(), "http://h/b#f");
    EXPECT_EQ(redirected(request("http://h/a#f"), 302, "b#g", originBound)->url().absoluteString(), "http://h/b#g");
}

}  // namespace
}  // namespace corvane::http
