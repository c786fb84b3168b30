#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpRequest.hpp>

namespace corvane {

std::shared_ptr<const SimpleHttpRequest> SimpleHttpRequest::make(Fields fields) {
    return std::shared_ptr<const SimpleHttpRequest>(new SimpleHttpRequest(std::move(fields)));
}

SimpleHttpRequest::SimpleHttpRequest(Fields fields) noexcept : fields_(std::move(fields)) {}

std::optional<URLRequest> SimpleHttpRequest::urlRequest() const {
    if (!fields_.url) return std::nullopt;
    URLRequest request(*fields_.url, URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData, timeoutInterval);
    if (fields_.ifModifiedSince) request.addValue(*fields_.ifModifiedSince, Headers::IfModifiedSince);
    if (fields_.payload) {
        request.setHttpMethod(std::string(Methods::POST));
        request.setHttpBody(fields_.payload);
    }
    return request;
}

}  // namespace corvane
