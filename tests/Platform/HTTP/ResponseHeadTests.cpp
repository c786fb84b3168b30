#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/ResponseHead.hpp>

namespace corvane::http {
namespace {

/// Reads lines as libcurl hands them over, one at a time.
ResponseHead head(const std::vector<std::string_view>& lines) {
    ResponseHead result;
    for (const auto line : lines)
        EXPECT_TRUE(result.append(line));
    return result;
}

TEST(ResponseHead, KeepsTheFieldsOfTheFinalHead) {
    const struct {
        std::vector<std::string_view> lines;
        std::vector<HTTPHeaderField> fields;
    } cases[] = {
        // Values byte for byte, but for the blanks around them.
        {{"HTTP/1.1 404 No\r\n", "last-MODIFIED:  Fri, 15  Mar\t2024 \t\r\n", "X:a:b\n", "Z: \xff\"\r\n", "\r\n"},
         {{"last-MODIFIED", "Fri, 15  Mar\t2024"}, {"X", "a:b"}, {"Z", "\xff\""}}},
        // Neither interim heads nor trailers.
        {{"HTTP/1.1 103 Early Hints", "Link: </a>", "", "HTTP/1.1 404 No", "A: 1", "", "Trailer: 2", ""}, {{"A", "1"}}},
        // What is folded, and what is no field.
        {{"HTTP/1.1 404", " nothing", "A: 1", "\t 2", "no colon", "B : 3", ": 4", "HTTP/1.1: 5", "C:", ""},
         {{"A", "1 2"}, {"C", ""}}},
        // HTTP/2 has names in lower case only; they are given their usual capitals.
        {{"HTTP/2 404", "last-modified: a", "www-authenticate: b", "x-a--b: c", "CONTENT-md5: d", "x-3d: e", ""},
         {{"Last-Modified", "a"}, {"WWW-Authenticate", "b"}, {"X-A--B", "c"}, {"Content-MD5", "d"}, {"X-3d", "e"}}},
    };

    for (const auto& [lines, fields] : cases) {
        ResponseHead gathered = head(lines);
        EXPECT_TRUE(gathered.isFinal());
        const auto response = gathered.makeResponse(*URL::parse("http://h/"));
        EXPECT_EQ(response->statusCode(), 404);
        EXPECT_EQ(response->headerFields(), fields);
    }
    const ResponseHead interim = head({"HTTP/1.1 103 Early Hints", "Link: </a>", ""});
    EXPECT_TRUE(interim.isComplete() && !interim.isFinal());
}

TEST(ResponseHead, BelievesOneLengthOfPlainContent) {
    EXPECT_EQ(head({"HTTP/1.1 200 OK", "content-length: 12", ""}).contentLength(), 12U);
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", "Content-Length: 12", "Content-Encoding: gzip", ""}).contentLength());
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", "Content-Length: many", ""}).contentLength());
    EXPECT_EQ(head({"HTTP/1.1 200 OK", "Content-Length: 99999999999999999999999", ""}).contentLength(),
              std::numeric_limits<std::size_t>::max());
    EXPECT_TRUE(head({"HTTP/1.1 200 OK", "Content-Length: 1", "content-length: 2", ""}).hasConflictingLengths());
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", "Content-Length: 1", "Content-Length: 1", ""}).hasConflictingLengths());
}

}  // namespace
}  // namespace corvane::http
