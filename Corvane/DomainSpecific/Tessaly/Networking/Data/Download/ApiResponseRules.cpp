#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/Data/Download/Private/ApiResponseRules.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {
namespace {

/// The error of a response that has neither a body nor an error. Nothing is decrypted: the word is a fixed label.
const AnyError& decryptionError() {
    static const auto* const error = new AnyError(PlatformError("Decryption error", 9998));
    return *error;
}

}  // namespace

ApiResponse apiResponse(const SimpleHttpResponse& response) {
    if (response.isNotModified() && !response.error() && response.lastModified()) {
        return {std::nullopt, response};
    }
    if (response.data()) return {response.data(), response};
    return {response.error().value_or(decryptionError()), response.statusCode()};
}

ApiResponse emptyPostResponse() {
    auto body = JSONSerialization::data(JSONDictionary(), {.prettyPrinted = true});
    return {body ? std::optional(*std::move(body)) : std::nullopt, std::nullopt, false, std::nullopt, std::nullopt};
}

ApiResponse cachedResponse(ApiResponse response, const std::string& key, DataCache& cache, Date now) {
    if (response.statusCode() != HTTPStatusCode(HTTPStatusCode::notModified).rawValue()) {
        if (auto body = response.data()) {
            cache.store(key, {.data = *std::move(body), .date = now, .lastModified = response.lastModified()});
        }
        return response;
    }
    auto record = cache.lookup(key);
    if (!record) return {std::nullopt, std::nullopt, false, std::nullopt, std::nullopt};
    return {std::move(record->data), std::move(record->lastModified), response.isNotModified(), std::nullopt,
            std::nullopt};
}

}  // namespace corvane
