#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>

namespace corvane {

class SimpleHttpRequest;

/// One download through the data provider: what to ask for and how to treat the cache. Shared; may be used
/// from several threads.
///
///     auto request = ApiRequest::make({.url = url, .description = "fixtures", .cachePeriod = 30.0});
class CORVANE_EXPORT ApiRequest {
  public:
    /// An identifier that travels with a request: a number or a text, as the application has them.
    using PayloadId = std::variant<std::int64_t, std::string>;

    struct Fields {
        URL url;
        std::string description = {};
        std::optional<Data> payload = {};
        std::optional<std::set<PayloadId>> payloadIds = {};
        std::optional<std::string> ifModifiedSince = {};
        DataLoadOptions options = {};
        std::optional<double> cachePeriod = {};
        bool usePost = false;
    };

    [[nodiscard]] static std::shared_ptr<const ApiRequest> make(Fields fields);

    ~ApiRequest();
    ApiRequest(const ApiRequest&) = delete;
    ApiRequest& operator=(const ApiRequest&) = delete;

    /// The resource; its absolute string is the key under which the downloaded body is cached.
    [[nodiscard]] const URL& url() const noexcept { return fields_.url; }

    /// The name of the task, for logs and diagnostics; not sent.
    [[nodiscard]] const std::string& description() const noexcept { return fields_.description; }

    /// The body of a POST.
    [[nodiscard]] const std::optional<Data>& payload() const noexcept { return fields_.payload; }

    /// Identifiers that travel with the request for its users; the download road does not look at them.
    [[nodiscard]] const std::optional<std::set<PayloadId>>& payloadIds() const noexcept { return fields_.payloadIds; }

    /// Sent byte for byte as "If-Modified-Since".
    [[nodiscard]] const std::optional<std::string>& ifModifiedSince() const noexcept { return fields_.ifModifiedSince; }

    [[nodiscard]] DataLoadOptions options() const noexcept { return fields_.options; }

    /// For how many seconds a cached body may be served.
    [[nodiscard]] const std::optional<double>& cachePeriod() const noexcept { return fields_.cachePeriod; }

    /// Carried for the request's users. The method sent follows the payload: POST with one, GET without.
    [[nodiscard]] bool usePost() const noexcept { return fields_.usePost; }

    /// The request as the simple client sends it, over the default session; made on first use, the same
    /// object for every caller on every thread.
    [[nodiscard]] const std::shared_ptr<const SimpleHttpRequest>& simpleHttpRequest() const;

  private:
    explicit ApiRequest(Fields fields) noexcept;

    Fields fields_;
    mutable std::once_flag made_;
    mutable std::shared_ptr<const SimpleHttpRequest> simpleHttpRequest_;
};

}  // namespace corvane
