#pragma once

#include <memory>
#include <optional>
#include <string>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiRequest.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>

namespace corvane {

/// A request together with who asks.
struct ApiRequestData {
    std::shared_ptr<const ApiRequest> request;
    /// The caller's name; a new load for the same context replaces the one before.
    std::string context;
    std::optional<DataLoadOptions> options = {};
};

}  // namespace corvane
