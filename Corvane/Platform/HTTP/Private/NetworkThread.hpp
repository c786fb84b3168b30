#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include <curl/curl.h>

#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>
#include <Corvane/Platform/Dispatch/Private/DeadlineHeap.hpp>
#include <Corvane/Platform/HTTP/Private/DataTask.hpp>

namespace corvane::http {

/// The thread on which all sessions' exchanges run, over one libcurl multi handle.
///
/// It sleeps until a socket is ready, a timeout is due or a task is handed to it. To a virtual clock it
/// counts as busy while it has something to do by itself, not while a server has: what is on the wire is
/// waited for by nobody.
class NetworkThread final : public ClockClient {
  public:
    /// Started on first use and never ended.
    [[nodiscard]] static NetworkThread& shared();

    /// Starts a task, or what is left of it after a challenge.
    void start(std::shared_ptr<DataTask> task) { submit(std::move(task), Command::start); }

    /// Looks at a started task again that was cancelled, suspended or resumed.
    void update(std::shared_ptr<DataTask> task) { submit(std::move(task), Command::update); }

    /// Lets a task go on that was held back.
    void connectivityReturned(std::shared_ptr<DataTask> task) { submit(std::move(task), Command::release); }

    /// Counts how often the thread has turned to the wire; for itself. What comes in one turn comes at one time.
    [[nodiscard]] std::uint64_t turn() const noexcept { return turn_; }

    [[nodiscard]] ClockActivity activity() const noexcept override;
    void clockMoved() noexcept override;

  private:
    enum class Command : unsigned char { start, update, release };

    struct Submission {
        std::shared_ptr<DataTask> task;
        Command command;
    };

    NetworkThread();

    void submit(std::shared_ptr<DataTask> task, Command command);

    void wakeUp() const noexcept;
    void run();
    void takeSubmissions();
    void expire();
    void reap();
    void perform();
    /// Milliseconds to sleep, and that we do.
    int prepareToSleep();
    void sleep(int milliseconds);

    void begin(const std::shared_ptr<DataTask>& task);
    /// Whether the task waits at its session's gate from now on.
    bool holdBack(const std::shared_ptr<DataTask>& task, const Session& session);
    /// Sends what was held back, with so much of its timeout left.
    void release(const std::shared_ptr<DataTask>& task, double patience);
    void launch(const std::shared_ptr<DataTask>& task);
    void update(DataTask& task);
    void ended(const std::shared_ptr<DataTask>& task, CURLcode code);
    void followRedirect(const std::shared_ptr<DataTask>& task);
    bool poseChallenge(const std::shared_ptr<DataTask>& task);
    /// Takes the task off the wire and out of all books; its outcome follows.
    void leave(const std::shared_ptr<DataTask>& task);
    void fail(const std::shared_ptr<DataTask>& task, PlatformError error);

    CURLM* const multi_;
    /// Negative while there is no descriptor to be had.
    std::atomic<int> wakeDescriptor_;
    /// Whether handles were added that libcurl has not seen yet.
    bool hasNews_ = false;
    std::uint64_t turn_ = 0;
    /// libcurl 7.88 loses wake-ups of HTTP/2: data that one stream's handle reads from the socket for another is
    /// announced by a timer, which curl_multi_perform throws away when that other handle had its turn before; the
    /// socket is silent then. So, while there may be such streams, we look again after a quiet millisecond, two,
    /// four... in real time: a lost wake-up delays a stream at most by as long as the wire was quiet before.
    std::size_t secureOnWire_ = 0;
    int quietMilliseconds_ = 1;
    std::vector<Submission> batch_;

    mutable std::mutex mutex_;
    std::vector<Submission> submissions_;
    mutable DeadlineHeap<DataTask> deadlines_;
    std::uint64_t accepted_ = 0;
    std::uint64_t finished_ = 0;
    bool isAsleep_ = false;
};

}  // namespace corvane::http
