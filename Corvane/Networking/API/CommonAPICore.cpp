#include <string>
#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPMethods.hpp>
#include <Corvane/Networking/API/CommonAPICore.hpp>

namespace corvane::detail {

CommonAPICore::CommonAPICore(std::shared_ptr<APIRemoteProtocol> apiRemote, std::shared_ptr<APICacheProtocol> apiCache,
                             std::shared_ptr<APIAutoRetry> autoRetry)
    : url_(std::nullopt),
      apiRemote_(std::move(apiRemote)),
      apiCache_(std::move(apiCache)),
      autoRetry_(std::move(autoRetry)) {}

auto CommonAPICore::load(std::shared_ptr<CommonAPICore> self, Decode decode) -> Task<Outcome> {
    while (true) {
        auto outcome = co_await self->loadOnce(decode);
        if (outcome || !outcome.error().isServerFault() || !self->autoRetry_) co_return outcome;
        const TYAutoRetryResult decision = co_await self->autoRetry_->start();
        if (decision == TYAutoRetryResult::stop) {
            self->autoRetry_->clear();
            co_return outcome;
        }
    }
}

auto CommonAPICore::loadOnce(Decode& decode) -> Task<Outcome> {
    const std::optional<URL> url = this->url();
    if (!url) co_return std::unexpected(CommonAPIError::invalidURL());

    std::optional<std::string> ifModifiedSince;
    if (apiCache_) {
        auto cached = co_await apiCache_->data(url->absoluteString());
        if (cached) ifModifiedSince = std::move(cached->lastModified);
    }
    auto response = co_await apiRemote_->performRequest(*url, std::move(ifModifiedSince), std::string(HTTPMethods::get),
                                                        std::nullopt);
    if (response) co_return co_await accept(*std::move(response), decode);
    if (response.error().isNotModified()) co_return co_await answerFromCache(*url, decode);
    co_return std::unexpected(std::move(response).error());
}

auto CommonAPICore::accept(URLSessionAPIResponse response, Decode& decode) -> Task<Outcome> {
    if (auto error = decode(response.data)) co_return std::unexpected(CommonAPIError::decodingError(*std::move(error)));

    const auto date = SecondsSince1970::fromResponseTimeStampString(response.timeStamp);
    const SecondsSince1970 timestamp = date ? *date : SecondsSince1970::now();
    if (apiCache_) {
        // Deliberately read again: a URL that was set meanwhile is the key.
        if (const std::optional<URL> url = this->url()) {
            co_await apiCache_->set(response.data, response.lastModified, timestamp, url->absoluteString());
        }
    }
    co_return timestamp;
}

auto CommonAPICore::answerFromCache(const URL& url, Decode& decode) -> Task<Outcome> {
    std::optional<APIDataCache> cached;
    if (apiCache_) cached = co_await apiCache_->data(url.absoluteString());
    if (!cached) co_return std::unexpected(CommonAPIError::clientAPIError(ClientAPIError::emptyData()));
    if (auto error = decode(cached->data)) co_return std::unexpected(CommonAPIError::decodingError(*std::move(error)));
    co_return cached->timeStamp;
}

}  // namespace corvane::detail
