#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Cache/DataCacheProvider.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/APIAutoRetryHandler.hpp>
#include <Corvane/Networking/API/APIRepository.hpp>
#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>

#include "MeteredRemote.hpp"
#include "Models.hpp"

namespace matchday {

/// The league's documents, each in a repository with periods of its own, and what asking them cost.
class League {
  public:
    /// Told of each answer: who asked for what, and the metadata of the answer.
    using Witness =
        std::function<void(std::string_view who, std::string_view what, const corvane::FetchResultMetadata& metadata)>;

    /// A failure is the sentence to tell the user.
    template <class Model>
    using Answer = std::expected<std::shared_ptr<const Model>, std::string>;

    struct Summary {
        std::size_t asks = 0;
        std::size_t requests = 0;
        std::size_t notModified = 0;
        std::size_t bytesReceived = 0;
        /// What asking without repositories would have brought in more.
        std::size_t bytesSaved = 0;
    };

    League(const std::string& base, Witness witness)
        : remote_(std::make_shared<MeteredRemote>(
              std::make_shared<corvane::URLSessionAPIRemote>(nullptr, patience, "matchday"))),
          witness_(std::move(witness)),
          fixtures_(api<Matchday>(base + "/v1/fixtures"), 30, 0),
          standings_(api<Standings>(base + "/v1/standings"), 300, 0),
          teams_(api<Teams>(base + "/v1/teams"), 86'400, 3'600) {}

    // From the cache, or as fresh as the periods ask for. On the thread of the task that awaits.
    auto fixtures(std::string who, bool useCache) { return ask(fixtures_, std::move(who), "fixtures", useCache); }

    auto standings(std::string who, bool useCache) { return ask(standings_, std::move(who), "standings", useCache); }

    auto teams(std::string who, bool useCache) { return ask(teams_, std::move(who), "teams", useCache); }

    [[nodiscard]] Summary summary() const;

  private:
    /// Seconds for one exchange.
    static constexpr double patience = 5;

    template <class Model>
    std::shared_ptr<corvane::CommonAPI<Model>> api(const std::string& url) {
        // A server that is at fault gets two more chances.
        auto retry = corvane::APIAutoRetryHandler::make(2, 0.2);
        auto api = std::make_shared<corvane::CommonAPI<Model>>(remote_, bodies_, std::move(retry));
        api->update(corvane::URL::parse(url));
        return api;
    }

    template <class Model>
    corvane::Task<Answer<Model>> ask(corvane::APIRepository<Model> repository, std::string who, std::string_view what,
                                     bool useCache) {
        ++asks_;
        const auto answer = co_await repository.fetchData(useCache);
        witness_(who, what, answer ? answer->metadata : answer.error().metadata());
        if (!answer) co_return std::unexpected(std::string(what) + ": " + answer.error().errorDescription());
        if (const auto url = repository.url()) bytesDelivered_ += remote_->traffic().sizes[url->absoluteString()];
        co_return answer->model;
    }

    std::shared_ptr<MeteredRemote> remote_;
    std::shared_ptr<corvane::DataCacheProvider> bodies_ = corvane::DataCacheProvider::make(3'600, 86'400);
    Witness witness_;
    std::size_t asks_ = 0;
    std::size_t bytesDelivered_ = 0;
    corvane::APIRepository<Matchday> fixtures_;
    corvane::APIRepository<Standings> standings_;
    corvane::APIRepository<Teams> teams_;
};

}  // namespace matchday
