#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <utility>

#include <Corvane/Core/CustomTypes/TaggedType/SecondsSince1970Tag.hpp>
#include <Corvane/Networking/API/CommonAPICore.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>

namespace corvane {

/// The typed client of one JSON resource: asks a remote for it, conditionally when a cache knows it already, and
/// decodes it.
///
///     CommonAPI<Fixtures> api(std::make_shared<URLSessionAPIRemote>(nullptr, 30, "scores/2.1"));
///     api.update(URL::parse("https://example.org/fixtures"));
///     auto fixtures = co_await api.loadData();
///     if (!fixtures) log.error(fixtures.error().errorDescription());
///
/// Any thread; loads may run side by side, and go on when the API is gone.
template <Decodable M>
class CommonAPI {
  public:
    using Model = M;

    struct CommonAPIFetchResult {
        Model model;
        /// When the server produced the data.
        SecondsSince1970 timestamp;
    };

    /// Without a URL. Without a cache no request is conditional; without a handler a server's fault ends the load.
    explicit CommonAPI(std::shared_ptr<APIRemoteProtocol> apiRemote,
                       std::shared_ptr<APICacheProtocol> apiCache = nullptr,
                       std::shared_ptr<APIAutoRetry> autoRetry = nullptr)
        : core_(std::make_shared<detail::CommonAPICore>(std::move(apiRemote), std::move(apiCache),
                                                        std::move(autoRetry))) {}

    virtual ~CommonAPI() = default;
    CommonAPI(const CommonAPI&) = delete;
    CommonAPI& operator=(const CommonAPI&) = delete;

    [[nodiscard]] std::optional<URL> url() const { return core_->url(); }

    /// Replaces the URL. A load that is under way keeps what it asks for, but caches it under the new URL.
    void update(std::optional<URL> url) { core_->setURL(std::move(url)); }

    /// Loads and decodes the model on the shared pool, never on the main thread.
    ///
    /// - Fails with `invalidURL` when there is no URL, and with `decodingError` when the body is no model; neither
    ///   touches the cache.
    /// - When the server answers "not modified" the model comes from the cache, with the time of the cached body. If
    ///   there is none, the load fails with `clientAPIError(emptyData)`.
    /// - After a `serverFault` the handler decides whether to load again. When it stops, it is cleared, and the load
    ///   fails with that fault.
    /// - Cancelling the task cancels the transfer.
    [[nodiscard]] virtual Task<std::expected<CommonAPIFetchResult, CommonAPIError>> loadData() {
        return on(TaskExecutor(), load(core_));
    }

  private:
    static Task<std::expected<CommonAPIFetchResult, CommonAPIError>> load(std::shared_ptr<detail::CommonAPICore> core) {
        std::optional<Model> model;
        auto timestamp = co_await detail::CommonAPICore::load(
            std::move(core), [&model](const Data& body) -> std::optional<DecodingError> {
                auto decoded = JSONDecoder().decode<Model>(body);
                if (!decoded) return std::move(decoded).error();
                model.emplace(*std::move(decoded));
                return std::nullopt;
            });
        if (!timestamp) co_return std::unexpected(std::move(timestamp).error());
        co_return CommonAPIFetchResult{.model = *std::move(model), .timestamp = *timestamp};
    }

    const std::shared_ptr<detail::CommonAPICore> core_;
};

}  // namespace corvane
