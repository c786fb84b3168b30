#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/ResponseHead.hpp>

namespace corvane::http {
namespace {

/// Reads lines as libcurl hands them over, one at a time.
ResponseHead head(std::initializer_list<std::string_view> lines) {
    ResponseHead result;
    for (const auto line : lines)
        EXPECT_TRUE(result.append(line));
    return result;
}

std::shared_ptr<const HTTPURLResponse> response(ResponseHead& of) {
    return of.makeResponse(*URL::parse("http://h/"));
}

TEST(ResponseHead, KeepsValuesByteForByte) {
    auto h = head({"HTTP/1.1 200 OK\r\n", "last-MODIFIED:  Fri, 15  Mar\t2024 \t\r\n", "X:a:b\n", "Y:\r\n",
                   "Z: \xff\"\r\n", "\r\n"});
    ASSERT_TRUE(h.isFinal());
    const auto r = response(h);
    EXPECT_EQ(r->statusCode(), 200);
    EXPECT_EQ(r->httpVersion(), "HTTP/1.1");
    EXPECT_EQ(r->headerFields(),
              (std::vector<HTTPHeaderField>{
                  {"last-MODIFIED", "Fri, 15  Mar\t2024"}, {"X", "a:b"}, {"Y", ""}, {"Z", "\xff\""}}));
}

TEST(ResponseHead, ForgetsInterimHeadsAndIgnoresTrailers) {
    auto h = head({"HTTP/1.1 103 Early Hints\r\n", "Link: </a>\r\n", "\r\n"});
    EXPECT_TRUE(h.isComplete());
    EXPECT_FALSE(h.isFinal());
    for (const auto* const line : {"HTTP/1.1 404 Not Found\r\n", "A: 1\r\n", "\r\n", "Trailer: 2\r\n", "\r\n"}) {
        EXPECT_TRUE(h.append(line));
    }
    const auto r = response(h);
    EXPECT_EQ(r->statusCode(), 404);
    EXPECT_EQ(r->headerFields(), (std::vector<HTTPHeaderField>{{"A", "1"}}));
}

TEST(ResponseHead, UnfoldsAndPassesOverWhatIsNoField) {
    auto h = head({"HTTP/1.1 200 OK\r\n", " folded into nothing\r\n", "A: 1\r\n", "\t 2\r\n", "no colon\r\n",
                   "B : 3\r\n", ": 4\r\n", "HTTP/1.1: 5\r\n", "C: 6\r\n", "\r\n"});
    EXPECT_EQ(response(h)->headerFields(), (std::vector<HTTPHeaderField>{{"A", "1 2"}, {"C", "6"}}));
}

TEST(ResponseHead, BelievesALengthOnlyOfPlainContent) {
    EXPECT_EQ(head({"HTTP/1.1 200 OK", "content-length: 12", ""}).contentLength(), 12U);
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", "Content-Length: 12", "Content-Encoding: gzip", ""}).contentLength());
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", "Content-Length: many", ""}).contentLength());
    EXPECT_EQ(head({"HTTP/1.1 200 OK", "Content-Length: 99999999999999999999999", ""}).contentLength(),
              std::numeric_limits<std::size_t>::max());
}

TEST(ResponseHead, SeesLengthsThatContradictEachOther) {
    EXPECT_TRUE(head({"HTTP/1.1 200 OK", "Content-Length: 1", "content-length: 2", ""}).hasConflictingLengths());
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", "Content-Length: 1", "Content-Length: 1", ""}).hasConflictingLengths());
    EXPECT_FALSE(head({"HTTP/1.1 200 OK", ""}).hasConflictingLengths());
}

}  // namespace
}  // namespace corvane::http
