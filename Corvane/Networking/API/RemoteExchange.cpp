#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPHeaders.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Networking/API/Private/RemoteExchange.hpp>

namespace corvane {

std::expected<URLSessionAPIResponse, CommonAPIError> remoteOutcome(std::optional<Data> data,
                                                                   const HTTPURLResponse* response,
                                                                   const std::optional<AnyError>& error) {
    if (error) return std::unexpected(CommonAPIError::urlSessionError(*error));
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
