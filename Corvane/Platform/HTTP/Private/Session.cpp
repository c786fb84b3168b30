#include <utility>

#include <Corvane/Platform/HTTP/Private/ConnectivityGate.hpp>
#include <Corvane/Platform/HTTP/Private/DataTask.hpp>
#include <Corvane/Platform/HTTP/Private/Session.hpp>

namespace corvane::http {

namespace {

/// How many handles a session keeps when they are not used. Making one costs more than a small request; one at rest
/// holds the pages of its receive buffer that were needed.
constexpr std::size_t exchangesAtRest = 64;

}  // namespace

Session::Session(URLSessionConfiguration configuration, std::shared_ptr<URLSessionDelegate> delegate,
                 DispatchQueue& queue, std::shared_ptr<DispatchQueue> owner, bool mayBeInvalidated)
    : slots(configuration.maximumConnectionsPerHost),
      configuration_(std::move(configuration)),
      queue_(queue),
      owner_(std::move(owner)),
      mayBeInvalidated_(mayBeInvalidated),
      gate_(configuration_.waitsForConnectivity ? std::make_shared<ConnectivityGate>() : nullptr),
      delegate_(std::move(delegate)) {}

Session::~Session() {
    // No task is left, so nothing of this is on the network thread: any thread may end it.
    exchanges_.clear();
    if (cookies_ != nullptr) curl_share_cleanup(cookies_);
}

std::shared_ptr<URLSessionDataTask> Session::dataTask(URLRequest request, CompletionHandler completionHandler) {
    const std::lock_guard lock(mutex_);
    auto task = std::make_shared<DataTask>(shared_from_this(), ++lastIdentifier_, std::move(request),
                                           std::move(completionHandler), isInvalidated_);
    tasks_.emplace(lastIdentifier_, task);
    return task;
}

std::shared_ptr<URLSessionDataTask> Session::dataTask(URLRequest request) {
    return dataTask(std::move(request), nullptr);
}

std::string Session::sessionDescription() const {
    const std::lock_guard lock(mutex_);
    return description_;
}

void Session::setSessionDescription(std::string description) {
    const std::lock_guard lock(mutex_);
    description_.swap(description);
}

std::shared_ptr<URLSessionDelegate> Session::delegate() const {
    const std::lock_guard lock(mutex_);
    return delegate_;
}

void Session::taskEnded(std::uint64_t identifier) noexcept {
    bool wasLast = false;
    {
        const std::lock_guard lock(mutex_);
        wasLast = tasks_.erase(identifier) > 0 && tasks_.empty() && isInvalidated_;
    }
    if (wasLast) postInvalidation();
}

void Session::finishTasksAndInvalidate() {
    invalidate(false);
}

void Session::invalidateAndCancel() {
    invalidate(true);
}

void Session::invalidate(bool cancels) {
    if (!mayBeInvalidated_) return;
    std::vector<std::shared_ptr<DataTask>> tasks;
    bool isOver = false;
    {
        const std::lock_guard lock(mutex_);
        isOver = !std::exchange(isInvalidated_, true) && tasks_.empty();
        for (const auto& [identifier, task] : tasks_) {
            if (!cancels) break;
            if (auto living = task.lock()) tasks.push_back(std::move(living));
        }
    }
    for (const auto& task : tasks)
        task->cancel();
    if (isOver) postInvalidation();
}

void Session::postInvalidation() {
    // A task that was never started may end in the session's own end.
    const auto self = weak_from_this().lock();
    if (!self) return;
    queue_.async([self] {
        std::shared_ptr<URLSessionDelegate> delegate;
        {
            const std::lock_guard lock(self->mutex_);
            delegate = std::exchange(self->delegate_, nullptr);
        }
        if (delegate) delegate->sessionDidBecomeInvalid(*self, std::nullopt);
    });
}

std::unique_ptr<Exchange> Session::takeExchange() {
    if (!exchanges_.empty()) {
        auto exchange = std::move(exchanges_.back());
        exchanges_.pop_back();
        return exchange;
    }
    if (cookies_ == nullptr && configuration_.storesCookies) {
        // Only the network thread uses it, so it needs no locks.
        cookies_ = curl_share_init();
        if (cookies_ != nullptr) curl_share_setopt(cookies_, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    }
    return std::make_unique<Exchange>(configuration_, cookies_);
}

void Session::putBack(std::unique_ptr<Exchange> exchange) {
    if (exchanges_.size() < exchangesAtRest) exchanges_.push_back(std::move(exchange));
}

}  // namespace corvane::http
