#pragma once

#include <optional>
#include <string>

#include <Corvane/DomainSpecific/Tessaly/Networking/DataProviderResponse.hpp>

namespace corvane {

class SimpleHttpResponse;

/// What came back for an `ApiRequest`. Does not change once made; copies share the body.
class CORVANE_EXPORT ApiResponse final : public DataProviderResponse {
  public:
    ApiResponse(std::optional<Data> data, std::optional<std::string> lastModified, bool isNotModified,
                std::optional<AnyError> error, std::optional<int> statusCode) noexcept;

    /// `data`, with everything else from `response`: a cached or checked body takes the place of the received
    /// one.
    ApiResponse(std::optional<Data> data, const SimpleHttpResponse& response);
    ApiResponse(std::optional<Data> data, const DataProviderResponse& dataProviderResponse);

    /// A failure without a body.
    ApiResponse(std::optional<AnyError> customError, std::optional<int> statusCode) noexcept;

    [[nodiscard]] std::optional<Data> data() const override { return data_; }

    [[nodiscard]] std::optional<std::string> lastModified() const override { return lastModified_; }

    [[nodiscard]] bool isNotModified() const override { return isNotModified_; }

    [[nodiscard]] std::optional<AnyError> error() const override { return error_; }

    [[nodiscard]] std::optional<int> statusCode() const override { return statusCode_; }

  private:
    std::optional<Data> data_;
    std::optional<std::string> lastModified_;
    bool isNotModified_;
    std::optional<AnyError> error_;
    std::optional<int> statusCode_;
};

}  // namespace corvane
