#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/HTTPHeaderField.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>

namespace corvane {

/// How caches may answer a request. The transport keeps no cache, and to caches on the way a request speaks
/// for itself ("Cache-Control"), so that all policies but `returnCacheDataDontLoad` send it as it stands.
enum class URLRequestCachePolicy : unsigned {
    useProtocolCachePolicy = 0,
    reloadIgnoringLocalCacheData = 1,
    returnCacheDataElseLoad = 2,
    /// Never goes to the network: the task fails with `URLError::resourceUnavailable`.
    returnCacheDataDontLoad = 3,
    reloadIgnoringLocalAndRemoteCacheData = 4,
    reloadRevalidatingCacheData = 5,
};

/// What to ask of a server: a value, checked when it is sent.
class CORVANE_EXPORT URLRequest {
  public:
    static constexpr double defaultTimeoutInterval = 60;

    /// A GET request that leaves its timeout to the session.
    explicit URLRequest(URL url, URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::useProtocolCachePolicy);
    URLRequest(URL url, URLRequestCachePolicy cachePolicy, double timeoutInterval);

    [[nodiscard]] const URL& url() const noexcept { return url_; }

    void setURL(URL url) { url_ = std::move(url); }

    [[nodiscard]] URLRequestCachePolicy cachePolicy() const noexcept { return cachePolicy_; }

    void setCachePolicy(URLRequestCachePolicy policy) noexcept { cachePolicy_ = policy; }

    /// Seconds that may pass without a byte in either direction before the task fails with `URLError::timedOut`;
    /// they start at `resume`, so that waiting for a connection and making it count. There is no limit to the whole.
    /// 60 when the request states none, and then the session's `timeoutIntervalForRequest` counts. What is not
    /// greater than zero counts as not stated.
    [[nodiscard]] double timeoutInterval() const noexcept;

    [[nodiscard]] bool statesTimeoutInterval() const noexcept { return timeoutInterval_.has_value(); }

    void setTimeoutInterval(double seconds) noexcept;

    /// "GET" unless set; case-sensitive (RFC 9110, 9.1).
    [[nodiscard]] const std::string& httpMethod() const noexcept { return httpMethod_; }

    void setHttpMethod(std::string method) { httpMethod_ = std::move(method); }

    [[nodiscard]] const std::optional<Data>& httpBody() const noexcept { return httpBody_; }

    void setHttpBody(std::optional<Data> body) noexcept { httpBody_ = std::move(body); }

    /// Replaces every field of that name (whatever its letter case) by one.
    void setValue(std::string value, std::string_view field);

    /// Adds to the field of that name, after a comma, or makes it.
    void addValue(std::string_view value, std::string_view field);

    void removeValue(std::string_view field);

    /// The value of the field; letter case does not matter.
    [[nodiscard]] std::optional<std::string> value(std::string_view field) const;

    /// The fields in the order they are sent. The transport adds Host, Accept, Accept-Encoding and User-Agent
    /// unless they are stated; Content-Length and Transfer-Encoding are always its own.
    [[nodiscard]] const std::vector<HTTPHeaderField>& headerFields() const noexcept { return headerFields_; }

    friend bool operator==(const URLRequest&, const URLRequest&) = default;

  private:
    URL url_;
    URLRequestCachePolicy cachePolicy_;
    std::optional<double> timeoutInterval_;
    std::string httpMethod_ = "GET";
    std::optional<Data> httpBody_;
    std::vector<HTTPHeaderField> headerFields_;
};

}  // namespace corvane
