#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiResponse.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpResponse.hpp>

namespace corvane {

DataProviderResponse::~DataProviderResponse() = default;

ApiResponse::ApiResponse(std::optional<Data> data, std::optional<std::string> lastModified, bool isNotModified,
                         std::optional<AnyError> error, std::optional<int> statusCode) noexcept
    : data_(std::move(data)),
      lastModified_(std::move(lastModified)),
      isNotModified_(isNotModified),
      error_(std::move(error)),
      statusCode_(statusCode) {}

ApiResponse::ApiResponse(std::optional<Data> data, const SimpleHttpResponse& response)
    : ApiResponse(std::move(data), response.lastModified(), response.isNotModified(), response.error(),
                  response.statusCode()) {}

ApiResponse::ApiResponse(std::optional<Data> data, const DataProviderResponse& dataProviderResponse)
    : ApiResponse(std::move(data), dataProviderResponse.lastModified(), dataProviderResponse.isNotModified(),
                  dataProviderResponse.error(), dataProviderResponse.statusCode()) {}

ApiResponse::ApiResponse(std::optional<AnyError> customError, std::optional<int> statusCode) noexcept
    : ApiResponse(std::nullopt, std::nullopt, false, std::move(customError), statusCode) {}

}  // namespace corvane
