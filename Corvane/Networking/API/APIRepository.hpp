#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <utility>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/Networking/API/APIRepositoryError.hpp>
#include <Corvane/Networking/API/APIRepositoryState.hpp>
#include <Corvane/Networking/API/CommonAPI.hpp>
#include <Corvane/Networking/API/FetchResultMetadata.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

namespace detail {

/// The serial queue on which a repository admits requests.
[[nodiscard]] CORVANE_EXPORT std::shared_ptr<DispatchQueue> makeRepositoryQueue();

}  // namespace detail

/// A model with where it came from. The model is shared by all who were answered with it.
template <class Model>
struct APIRepositoryAnswer {
    /// Never null.
    std::shared_ptr<const Model> model;
    FetchResultMetadata metadata;
};

/// Keeps the last model of a typed API in memory, and asks the network when it is not good enough; at most one fetch at
/// a time, whose outcome answers everybody who asks meanwhile.
///
///     const APIRepository fixtures(api, 3600, 60);  // good for an hour, and for a minute even to who wants it fresh
///     const auto answer = co_await fixtures.fetchData(true);
///     if (answer) show(*answer->model);
///
/// Every request is answered exactly once, whatever fails and whenever the repository goes: what it has begun it ends.
/// Copies are the same repository. Any thread.
///
/// `API` is a `CommonAPI` of the model or a class derived from it; whatever else has its `url` and `loadData` will do,
/// and may fail with errors of any type.
template <class M, class A = CommonAPI<M>>
class APIRepository {
    using State = detail::APIRepositoryState<M>;

  public:
    using Model = M;
    using API = A;

    /// A shared model or any error.
    using Result = typename State::Result;

    /// An empty one means that nobody wants to know.
    using Callback = typename State::Callback;

    using Answer = APIRepositoryAnswer<Model>;

    /// Note the order. Periods are in seconds; the model is served up to an age of `maxCachePeriod` to those who want
    /// it from the cache, and below an age of `minCachePeriod` to everybody. `api` is not null.
    APIRepository(std::shared_ptr<API> api, double maxCachePeriod, double minCachePeriod)
        : core_(std::make_shared<Core>(std::move(api), maxCachePeriod, minCachePeriod)) {}

    [[nodiscard]] std::shared_ptr<API> api() const { return core_->api.wrappedValue(); }

    /// That of the API; absent when it has none.
    [[nodiscard]] std::optional<URL> url() const { return api()->url(); }

    [[nodiscard]] double minCachePeriod() const noexcept { return core_->state.minCachePeriod(); }

    [[nodiscard]] double maxCachePeriod() const noexcept { return core_->state.maxCachePeriod(); }

    /// The serial queue on which requests are admitted.
    [[nodiscard]] const std::shared_ptr<DispatchQueue>& accessQueue() const noexcept { return core_->accessQueue; }

    /// Asks for the model. `callback` is called once: on the access queue when the cache answers, otherwise on the
    /// thread of the fetch, never on the main thread. Those who wait for one fetch are answered in reverse order, the
    /// latest first, with one result and the metadata of the request that started it. A request that comes while they
    /// are being answered is answered by the same fetch.
    ///
    /// A failed fetch leaves the model that is there in place, without serving it.
    void fetchData(bool useCache, Callback callback) const { ask(core_, useCache, std::move(callback)); }

    /// The same to be awaited. Cancelling the task does not end the wait: others may want the fetch.
    [[nodiscard]] Task<std::expected<Answer, APIRepositoryError>> fetchData(bool useCache) const {
        return awaitAnswer(core_, useCache);
    }

    /// Replaces the API, on the access queue, where `completion` (which may be empty) is called afterwards. The next
    /// fetch asks the new one. A fetch that is under way goes on, answers also those who come before it has its
    /// outcome, and its model becomes the cached one. Unless the cache is flushed, the model that is there is
    /// served as long as it is good.
    void update(std::shared_ptr<API> api, bool flushingCache, UniqueFunction<void()> completion) const {
        replace(core_, std::move(api), flushingCache, std::move(completion));
    }

    /// The same to be awaited.
    [[nodiscard]] Task<> update(std::shared_ptr<API> api, bool flushingCache) const {
        return awaitUpdate(core_, std::move(api), flushingCache);
    }

  private:
    /// What requests and fetches hold, so that the repository may go while they are under way.
    struct Core {
        Core(std::shared_ptr<API> first, double maxCachePeriod, double minCachePeriod)
            : api(std::move(first)), state(maxCachePeriod, minCachePeriod) {}

        Atomic<std::shared_ptr<API>> api;
        State state;
        const std::shared_ptr<DispatchQueue> accessQueue = detail::makeRepositoryQueue();
    };

    static void ask(const std::shared_ptr<Core>& core, bool useCache, Callback callback) {
        core->accessQueue->async([core, useCache, callback = std::move(callback)]() mutable {
            if (core->state.admit(useCache, std::move(callback))) {
                spawn(fetch(core, useCache), {.priority = QoSClass::userInitiated});
            }
        });
    }

    static void replace(const std::shared_ptr<Core>& core, std::shared_ptr<API> api, bool flushingCache,
                        UniqueFunction<void()> completion) {
        core->accessQueue->async(
            [core, api = std::move(api), flushingCache, completion = std::move(completion)]() mutable {
                core->api.setWrappedValue(std::move(api));
                core->state.update(flushingCache);
                if (completion) completion();
            });
    }

    static Task<> fetch(std::shared_ptr<Core> core, bool useCache) {
        for (std::optional<bool> next = useCache; next;) {
            const Result result = co_await load(core->api.wrappedValue());
            next = core->state.finishFetch(*next, result);
        }
    }

    static Task<Result> load(std::shared_ptr<API> api) {
        auto loaded = co_await api->loadData();
        if (!loaded) co_return std::unexpected(AnyError(std::move(loaded).error()));
        co_return std::make_shared<const Model>(std::move(loaded->model));
    }

    using Outcome = std::expected<Answer, APIRepositoryError>;

    static Task<Outcome> awaitAnswer(std::shared_ptr<Core> core, bool useCache) {
        co_return co_await withContinuation<Outcome>([&](Continuation<Outcome> continuation) {
            ask(core, useCache,
                [continuation = std::move(continuation)](const Result& result, const FetchResultMetadata& metadata) {
                    if (result) {
                        continuation.resume(Answer{.model = *result, .metadata = metadata});
                    } else {
                        continuation.resume(std::unexpected(APIRepositoryError::from(result.error(), metadata)));
                    }
                });
        });
    }

    static Task<> awaitUpdate(std::shared_ptr<Core> core, std::shared_ptr<API> api, bool flushingCache) {
        co_await withContinuation<void>([&](Continuation<void> continuation) {
            replace(core, std::move(api), flushingCache,
                    [continuation = std::move(continuation)] { continuation.resume(); });
        });
    }

    std::shared_ptr<Core> core_;
};

template <class API>
APIRepository(std::shared_ptr<API>, double, double) -> APIRepository<typename API::Model, API>;

}  // namespace corvane
