#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include <curl/curl.h>

#include <Corvane/Platform/HTTP/Private/Exchange.hpp>
#include <Corvane/Platform/HTTP/Private/HostSlots.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>

namespace corvane::http {

class ConnectivityGate;
class DataTask;

/// The one kind of session there is.
class Session final : public URLSession, public std::enable_shared_from_this<Session> {
  public:
    /// `owner` may be null for a queue that is never destroyed.
    Session(URLSessionConfiguration configuration, std::shared_ptr<URLSessionDelegate> delegate, DispatchQueue& queue,
            std::shared_ptr<DispatchQueue> owner, bool mayBeInvalidated);
    ~Session() override;

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                               CompletionHandler completionHandler) override;
    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request) override;
    [[nodiscard]] std::string sessionDescription() const override;
    void setSessionDescription(std::string description) override;

    [[nodiscard]] const URLSessionConfiguration& configuration() const noexcept override { return configuration_; }

    void finishTasksAndInvalidate() override;
    void invalidateAndCancel() override;

    // For tasks.

    [[nodiscard]] DispatchQueue& delegateQueue() const noexcept { return queue_; }

    [[nodiscard]] std::shared_ptr<URLSessionDelegate> delegate() const;
    void taskEnded(std::uint64_t identifier) noexcept;

    // For the network thread.

    HostSlots<std::shared_ptr<DataTask>> slots;

    /// Null unless the session waits for connectivity.
    [[nodiscard]] ConnectivityGate* gate() const noexcept { return gate_.get(); }

    [[nodiscard]] std::unique_ptr<Exchange> takeExchange();
    void putBack(std::unique_ptr<Exchange> exchange);

  private:
    void invalidate(bool cancels);
    void postInvalidation();

    const URLSessionConfiguration configuration_;
    DispatchQueue& queue_;
    const std::shared_ptr<DispatchQueue> owner_;
    const bool mayBeInvalidated_;
    const std::shared_ptr<ConnectivityGate> gate_;

    mutable std::mutex mutex_;
    std::shared_ptr<URLSessionDelegate> delegate_;
    std::string description_;
    std::unordered_map<std::uint64_t, std::weak_ptr<DataTask>> tasks_;
    std::uint64_t lastIdentifier_ = 0;
    bool isInvalidated_ = false;

    CURLSH* cookies_ = nullptr;
    /// Exchanges at rest; their handles are costly to make.
    std::vector<std::unique_ptr<Exchange>> exchanges_;
};

}  // namespace corvane::http
