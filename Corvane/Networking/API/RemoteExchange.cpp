#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Networking/API/Private/RemoteExchange.hpp>

namespace corvane {

URLRequest remoteRequest(const RemoteIdentity& identity, URL url, const std::optional<std::string>& ifModifiedSince,
                         std::optional<std::string> httpMethod, std::optional<Data> httpBody) {
    URLRequest request(std::move(url), URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData, identity.timeout);
    if (httpMethod) request.setHttpMethod(*std::move(httpMethod));
    request.setHttpBody(std::move(httpBody));
    request.setValue(identity.userAgent, HTTPHeaders::userAgent);
    if (ifModifiedSince) request.addValue(*ifModifiedSince, HTTPHeaders::ifModifiedSince);
    return request;
}

std::expected<URLSessionAPIResponse, CommonAPIError> remoteOutcome(std::optional<Data> data,
                                                                   const HTTPURLResponse* response,
                                                                   std::optional<AnyError> error) {
    if (error) return std::unexpected(CommonAPIError::urlSessionError(*std::move(error)));
    if (response == nullptr) return std::unexpected(CommonAPIError::invalidResponse());

    const int status = response->statusCode();
    if (status == HTTPStatusCode(HTTPStatusCode::notModified).rawValue())
        return std::unexpected(CommonAPIError::notModified());
    if (HTTPStatusCode::isRedirection(status)) return std::unexpected(CommonAPIError::redirection());
    if (HTTPStatusCode::isClientError(status)) return std::unexpected(CommonAPIError::clientFault(status));
    if (HTTPStatusCode::isServerError(status)) return std::unexpected(CommonAPIError::serverFault(status));

    return URLSessionAPIResponse{.data = std::move(data).value_or(Data()),
                                 .lastModified = response->headerField(HTTPHeaders::lastModified),
                                 .timeStamp = response->headerField(HTTPHeaders::date)};
}

}  // namespace corvane
