#pragma once

#include <optional>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Data.hpp>

namespace corvane {

/// A response of the data-download layer, whatever object stands behind it. Read-only.
class CORVANE_EXPORT DataProviderResponse {
  public:
    virtual ~DataProviderResponse();

    [[nodiscard]] virtual std::optional<Data> data() const = 0;

    /// The back end's validator, byte for byte.
    [[nodiscard]] virtual std::optional<std::string> lastModified() const = 0;

    /// Whether the back end answered that the caller's copy is still good.
    [[nodiscard]] virtual bool isNotModified() const = 0;
    [[nodiscard]] virtual std::optional<AnyError> error() const = 0;

    /// The HTTP status, absent when there was no HTTP response.
    [[nodiscard]] virtual std::optional<int> statusCode() const = 0;

  protected:
    DataProviderResponse() = default;
    DataProviderResponse(const DataProviderResponse&) = default;
    DataProviderResponse& operator=(const DataProviderResponse&) = default;
};

}  // namespace corvane
