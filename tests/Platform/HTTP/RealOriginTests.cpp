#include <sys/resource.h>

#include "SessionFixture.hpp"
#include "tests/Support/NginxOrigin.hpp"

namespace corvane {
namespace {

using Endpoint = NginxOrigin::Endpoint;

const std::string document = R"({"fixtures":[{"home":"Northport","away":"Eastvale"}]})";

class RealOrigin : public SessionTest {
  protected:
    void SetUp() override {
        ASSERT_EQ(origin.failure(), "");
        origin.serve("fixtures.json", document);
        configuration.caFile = origin.caFile();
        useConfiguration(configuration);
    }

    [[nodiscard]] URLRequest requestTo(Endpoint endpoint, std::string_view path = "/plain/fixtures.json",
                                       std::string_view host = "127.0.0.1") const {
        return URLRequest(*URL::parse(origin.url(endpoint, path, host)));
    }

    const NginxOrigin origin;
    URLSessionConfiguration configuration = URLSessionConfiguration::ephemeral();
};

TEST_F(RealOrigin, AnswersConditionallyOverEveryProtocol) {
    const struct {
        Endpoint endpoint;
        const char* version;
        const char* path = "/plain/fixtures.json";
        const char* host = "127.0.0.1";
    } cases[] = {
        {Endpoint::http, "HTTP/1.1"},
        {Endpoint::https, "HTTP/1.1"},
        {Endpoint::http2, "HTTP/2"},
        {Endpoint::http2, "HTTP/2", "/gzip/fixtures.json"},
        {Endpoint::http2, "HTTP/2", "/plain/fixtures.json", "localhost"},
        {Endpoint::http, "HTTP/1.1", "/gzip/fixtures.json", "localhost"},
    };

    for (const auto& [endpoint, version, path, host] : cases) {
        URLRequest asked = requestTo(endpoint, path, host);
        SCOPED_TRACE(asked.url().absoluteString() + " over " + version);
        const Completion first = load(asked);
        EXPECT_EQ(first.body(), document);
        ASSERT_EQ(first.status(), 200);
        EXPECT_EQ(first.response->httpVersion(), version);
        const auto lastModified = first.response->headerField("Last-Modified");
        ASSERT_EQ(lastModified, NginxOrigin::lastModified);
        EXPECT_TRUE(first.response->headerField("Date"));

        asked.setValue(*lastModified, "If-Modified-Since");
        const Completion second = load(asked);
        EXPECT_EQ(second.status(), 304);
        EXPECT_EQ(second.body(), "");
        EXPECT_EQ(second.response->headerField("Last-Modified"), NginxOrigin::lastModified);
    }
}

TEST_F(RealOrigin, CarriesManyRequestsOnOneHTTP2Connection) {
    std::vector<std::shared_ptr<URLSessionDataTask>> tasks;
    for (int i = 0; i < 100; ++i)
        tasks.push_back(start(requestTo(Endpoint::http2)));
    tasks[50]->cancel();
    waitForAll();
    std::size_t whole = 0;
    for (const Completion& completion : completions.all())
        whole += completion.body() == document ? 1U : 0U;
    EXPECT_GE(whole, 99U);
}

TEST_F(RealOrigin, IsNotTrustedWithoutReason) {
    EXPECT_TRUE(load(requestTo(Endpoint::httpsOfAnotherHost)).error == URLError::serverCertificateUntrusted);
    EXPECT_TRUE(load(requestTo(Endpoint::httpsExpired)).error == URLError::serverCertificateHasBadDate);
    EXPECT_EQ(load(requestTo(Endpoint::https)).status(), 200);
    // The connection that another session has verified against its own authorities is no reason.
    useConfiguration(URLSessionConfiguration::ephemeral());
    for (const Endpoint endpoint : {Endpoint::https, Endpoint::http2}) {
        const Completion untrusted = load(requestTo(endpoint));
        EXPECT_TRUE(untrusted.error == URLError::serverCertificateUntrusted) << untrusted.code();
        EXPECT_EQ(untrusted.response, nullptr);
    }
    configuration.caFile = "/nonexistent/ca.pem";
    useConfiguration(configuration);
    EXPECT_TRUE(load(requestTo(Endpoint::https)).error == URLError::secureConnectionFailed);
}

TEST_F(RealOrigin, ADecompressionBombIsDefused) {
    // A gibibyte on the disk's word, a mebibyte on the wire.
    origin.serveZeros("bomb.json", std::size_t{1} << 30U);
    configuration.maximumResponseBytes = 1'000'000;
    useConfiguration(configuration);
    const auto peakKilobytes = [] {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = peakKilobytes();
    const Completion completion = load(requestTo(Endpoint::http, "/gzip/bomb.json"));
    EXPECT_TRUE(completion.error == URLError::dataLengthExceedsMaximum) << completion.code();
    EXPECT_FALSE(completion.data);
    EXPECT_EQ(completion.response->headerField("Content-Encoding"), "gzip");
    EXPECT_LT(peakKilobytes() - before, 64 * 1024);
}

}  // namespace
}  // namespace corvane
