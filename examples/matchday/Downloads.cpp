#include "Downloads.hpp"

#include <chrono>
#include <utility>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace matchday {

using corvane::ApiRequest;
using corvane::RequestManagerResult;

const corvane::JSONDictionary* Download::json() const noexcept {
    const auto* const success = result.asSuccess();
    return success != nullptr ? &success->json : nullptr;
}

std::optional<std::string> Download::lastModified() const {
    const auto* const success = result.asSuccess();
    return success != nullptr ? success->lastModified : std::nullopt;
}

void Downloads::load(std::string path, Options options, Done done) {
    const auto url = corvane::URL::parse(base_ + path);
    auto payload = options.payload ? corvane::JSONSerialization::data(*options.payload) : corvane::Data();
    if (!url || !payload) {
        const auto reason = corvane::ApiDataProviderFailureReason::invalidUrl();
        return done({.path = std::move(path), .result = RequestManagerResult::failure(reason)});
    }
    ApiRequest::Fields fields{.url = *url, .description = path, .ifModifiedSince = options.ifModifiedSince};
    if (options.payload) {
        fields.payload = *std::move(payload);
        fields.usePost = true;
    }
    const std::string context = options.context.empty() ? path : options.context;
    const auto ours = std::make_shared<const std::string>(path);
    if (const auto other = std::exchange(pending_[context], ours)) onReplaced_(*other);

    auto finish = [weak = weak_from_this(), context, ours, done = std::move(done)](const Download& download) {
        const auto self = weak.lock();
        if (self && self->pending_[context] == ours) self->pending_.erase(context);
        if (done) done(download);
    };
    const bool usesCache = options.usesCache;
    manager_->performApi(
        {.request = ApiRequest::make(std::move(fields)), .context = context}, usesCache,
        [path = std::move(path), options = std::move(options), start = std::chrono::steady_clock::now(),
         finish = std::move(finish)](RequestManagerResult result) mutable {
            const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
            Download download{.method = options.payload ? "POST" : "GET",
                              .path = std::move(path),
                              .result = std::move(result),
                              .milliseconds = elapsed.count()};
            // The cached road gives the kept copy as if it had come; it is the kept one that has our validator.
            download.isKeptCopy = options.ifModifiedSince && download.lastModified() == options.ifModifiedSince;
            corvane::performOnMain([download = std::move(download), finish = std::move(finish)] { finish(download); });
        });
}

corvane::Task<Download> Downloads::load(std::string path, Options options) {
    co_return co_await corvane::withContinuation<Download>([&](corvane::Continuation<Download> continuation) {
        load(std::move(path), std::move(options),
             [continuation = std::move(continuation)](const Download& download) { continuation.resume(download); });
    });
}

}  // namespace matchday
