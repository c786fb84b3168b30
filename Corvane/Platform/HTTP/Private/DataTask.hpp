#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <Corvane/Platform/Dispatch/Private/DeadlineHeap.hpp>
#include <Corvane/Platform/HTTP/Private/Exchange.hpp>
#include <Corvane/Platform/HTTP/URLSession.hpp>

namespace corvane::http {

class Session;

/// What a task ends with.
struct TaskOutcome {
    std::optional<Data> data = std::nullopt;
    std::shared_ptr<const HTTPURLResponse> response = nullptr;
    std::optional<PlatformError> error = std::nullopt;
};

/// The one kind of task there is.
///
/// Two threads decide about it, the one that calls and the network thread. Whoever comes first with an
/// outcome has it delivered, under the task's lock; later ones are dropped.
class DataTask final : public URLSessionDataTask,
                       public Deadline,
                       public ExchangeObserver,
                       public std::enable_shared_from_this<DataTask> {
  public:
    DataTask(std::shared_ptr<Session> session, std::uint64_t identifier, URLRequest request,
             URLSession::CompletionHandler completionHandler, bool isRefused);
    ~DataTask() override;

    void resume() override;
    void suspend() override;
    void cancel() override;
    [[nodiscard]] URLSessionTaskState state() const override;

    [[nodiscard]] std::uint64_t taskIdentifier() const noexcept override { return identifier_; }

    [[nodiscard]] std::string taskDescription() const override;
    void setTaskDescription(std::string description) override;

    [[nodiscard]] float priority() const noexcept override { return priority_.load(std::memory_order_relaxed); }

    void setPriority(float priority) noexcept override { priority_.store(priority, std::memory_order_relaxed); }

    [[nodiscard]] const URLRequest& originalRequest() const noexcept override { return request_; }

    [[nodiscard]] std::shared_ptr<const HTTPURLResponse> response() const override;
    [[nodiscard]] std::optional<PlatformError> error() const override;

    // For the network thread.

    /// `held` waits for connectivity, `waiting` for a slot.
    enum class Stage : unsigned char { outside, held, waiting, onWire };

    /// What the network thread keeps with the task; nobody else touches it.
    struct Transit {
        Stage stage = Stage::outside;
        std::shared_ptr<Session> session;
        std::unique_ptr<Exchange> exchange;
        /// What is sent next: the original request or where a redirect led.
        std::optional<URLRequest> request;
        int redirects = 0;
        bool isSuspended = false;
        /// Whether the task has been looked at for connectivity: it is held back at most once.
        bool wasAtGate = false;
        /// How much of the timeout counts: half of it for waiting for connectivity, and half for trying without.
        double patience = 1;
        /// The network thread's last turn in which bytes moved.
        std::uint64_t turn = 0;
        std::optional<Login> login;
        /// The only origin that is shown the login.
        std::string loginOrigin;
        int refusedLogins = 0;
    };

    Transit transit;

    [[nodiscard]] const URLRequest& nextRequest() const noexcept {
        return transit.request ? *transit.request : request_;
    }

    /// The session when the task still wants to run, else null. Fills in what `transit` takes from the task.
    [[nodiscard]] std::shared_ptr<Session> beginTransit();

    [[nodiscard]] bool hasOutcome() const;
    [[nodiscard]] bool isSuspended() const;

    /// Ends the task unless it has an outcome already.
    void finish(TaskOutcome outcome);

    /// The same on the network thread, which may then run a brief completion handler itself.
    void finishHere(TaskOutcome outcome);

    /// See `completeInPlace`. Before the task is resumed.
    void setBrief() noexcept { isBrief_ = true; }

    /// Lets the delegate decide about a challenge; `outcome` is the response that posed it, to be handed out
    /// if the delegate has nothing better.
    void ask(URLAuthenticationChallenge challenge, bool wantsDigest, TaskOutcome outcome);

    /// Starts the idle timeout over, and stops it while the task is suspended. When it gives true, the
    /// deadline is earlier than the heap knows.
    bool restartTimeout() noexcept;

    /// Tells the delegate that the task waits for connectivity.
    void tellOfWaiting();

    /// Lets the delegate decide about a request that was held back; the task starts again by itself if it says so.
    /// False without a delegate.
    [[nodiscard]] bool askAboutDelay();

    void bytesMoved() noexcept override;

    [[nodiscard]] double idleSeconds() const noexcept { return idleSeconds_; }

  private:
    /// Notes the outcome. The session when it is to be posted now, else null.
    [[nodiscard]] std::shared_ptr<Session> accept(TaskOutcome outcome);
    /// Sends the outcome to the delegate queue. Call it once, after `isPosted_` was set.
    void post(Session& session);
    void deliver();
    void answerAboutDelay(const std::shared_ptr<Session>& session);
    void answer(const URLAuthenticationChallenge& challenge, bool wantsDigest, TaskOutcome outcome);

    const std::uint64_t identifier_;
    const URLRequest request_;
    const double idleSeconds_;
    std::atomic<float> priority_ = defaultPriority;

    mutable std::mutex mutex_;
    /// Held until the completion is being delivered.
    std::shared_ptr<Session> session_;
    URLSession::CompletionHandler completionHandler_;
    URLSessionTaskState state_ = URLSessionTaskState::suspended;
    const bool isRefused_;
    bool isBrief_ = false;
    bool isStarted_ = false;
    bool hasOutcome_ = false;
    /// Whether the outcome is on its way to the delegate queue: from here on nothing changes it.
    bool isPosted_ = false;
    TaskOutcome outcome_;
    /// The task itself while it is suspended and has an outcome: nobody else may be holding it then.
    std::shared_ptr<DataTask> parked_;
    std::string description_;
    std::optional<Login> login_;
    /// What the delegate wants to be sent instead.
    std::optional<URLRequest> newRequest_;
};

}  // namespace corvane::http
