#pragma once

#include <string>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiResponse.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCache.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpResponse.hpp>
#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

/// What a response of the simple client is to users of the data provider.
[[nodiscard]] ApiResponse apiResponse(const SimpleHttpResponse& response);

/// The answer to a request that wants a POST and has nothing to post: an empty JSON object.
[[nodiscard]] ApiResponse emptyPostResponse();

/// Passes a response by the cache: keeps its body under `key`, or answers a 304 with the body that is kept.
[[nodiscard]] ApiResponse cachedResponse(ApiResponse response, const std::string& key, DataCache& cache, Date now);

}  // namespace corvane
