#include "MeteredRemote.hpp"

#include <utility>

namespace matchday {

using corvane::CommonAPIError;
using corvane::Task;
using corvane::URLSessionAPIResponse;

Task<std::expected<URLSessionAPIResponse, CommonAPIError>> MeteredRemote::performRequest(
    corvane::URL url, std::optional<std::string> ifModifiedSince, std::optional<std::string> httpMethod,
    std::optional<corvane::Data> httpBody) {
    const std::string key = url.absoluteString();
    auto response = co_await remote_->performRequest(std::move(url), std::move(ifModifiedSince), std::move(httpMethod),
                                                     std::move(httpBody));
    traffic_.mutate([&](Traffic& traffic) {
        ++traffic.requests;
        if (response) {
            traffic.bytesReceived += response->data.size();
            traffic.sizes[key] = response->data.size();
        } else if (response.error().isNotModified()) {
            ++traffic.notModified;
        }
    });
    co_return response;
}

std::shared_ptr<corvane::URLSessionDataTask> MeteredRemote::performRequestWithTask(
    corvane::URL url, std::string description, std::optional<std::string> ifModifiedSince,
    std::optional<std::string> httpMethod, std::optional<corvane::Data> httpBody,
    corvane::URLSession::CompletionHandler completion) {
    return remote_->performRequestWithTask(std::move(url), std::move(description), std::move(ifModifiedSince),
                                           std::move(httpMethod), std::move(httpBody), std::move(completion));
}

}  // namespace matchday
