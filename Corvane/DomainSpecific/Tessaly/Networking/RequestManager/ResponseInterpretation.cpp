#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/RequestManager/Private/ResponseInterpretation.hpp>
#include <Corvane/Platform/FatalError.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

using Reason = ApiDataProviderFailureReason;

constexpr std::int64_t cancelledCode = static_cast<int>(URLError::cancelled);
constexpr std::int64_t timedOutCode = static_cast<int>(URLError::timedOut);
constexpr std::int64_t noStatus = -1111;
constexpr std::int64_t invalidJsonCode = 9997;

ResponseInterpretation failure(Reason reason, std::optional<std::int64_t> reportedCode = std::nullopt) {
    return {RequestManagerResult::failure(std::move(reason)), reportedCode};
}

/// Codes count whatever the error's domain.
ResponseInterpretation interpretError(const AnyError& error, std::int64_t status) {
    if (error.code() == cancelledCode) return {std::nullopt};
    auto reason = Reason::invalidResponse(error.localizedDescription());
    if (error.code() == timedOutCode) return failure(std::move(reason), timedOutCode);
    const bool isReported = status >= 400 || status == timedOutCode;
    return failure(std::move(reason), isReported ? std::optional(status) : std::nullopt);
}

}  // namespace

ResponseInterpretation interpret(const ApiResponse& response) {
    if (const auto error = response.error()) return interpretError(*error, response.statusCode().value_or(noStatus));
    const auto data = response.data();
    if (!data) {
        if (response.isNotModified()) return {RequestManagerResult::notModified()};
        return failure(Reason::undefined());
    }
    const auto json = JSONSerialization::jsonObject(*data);
    if (!json) return failure(Reason::invalidJson(), invalidJsonCode);
    const JSONDictionary* const dictionary = json->asDictionary();
    if (dictionary == nullptr) fatalError("The back end answered with JSON that is no object");
    return {RequestManagerResult::success(*dictionary, response.lastModified())};
}

}  // namespace corvane
