#include <Corvane/Platform/HTTP/URLSessionDelegate.hpp>

namespace corvane {

URLSessionDelegate::~URLSessionDelegate() = default;

void URLSessionDelegate::taskIsWaitingForConnectivity(URLSession& /*session*/, URLSessionDataTask& /*task*/) {}

URLSessionDelayedRequestDecision URLSessionDelegate::taskWillBeginDelayedRequest(URLSession& /*session*/,
                                                                                 URLSessionDataTask& /*task*/,
                                                                                 const URLRequest& /*request*/) {
    return {};
}

URLSessionAuthChallengeDecision URLSessionDelegate::taskDidReceiveChallenge(
    URLSession& /*session*/, URLSessionDataTask& /*task*/, const URLAuthenticationChallenge& /*challenge*/) {
    return {};
}

void URLSessionDelegate::dataTaskDidReceiveData(URLSession& /*session*/, URLSessionDataTask& /*task*/,
                                                const Data& /*data*/) {}

// NOLINTBEGIN(performance-unnecessary-value-param): those who override these may keep the error.
void URLSessionDelegate::taskDidComplete(URLSession& /*session*/, URLSessionDataTask& /*task*/,
                                         std::optional<PlatformError> /*error*/) {}

void URLSessionDelegate::sessionDidBecomeInvalid(URLSession& /*session*/, std::optional<PlatformError> /*error*/) {}

// NOLINTEND(performance-unnecessary-value-param)

}  // namespace corvane
