#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>
#include <Corvane/Platform/HTTP/URLRequest.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

enum class URLSessionTaskState : unsigned char {
    running,
    suspended,
    /// Cancelled; the completion has not been called yet.
    canceling,
    /// The completion is being or has been called.
    completed,
};

/// One request on its way, made by `URLSession::dataTask` and suspended at first.
///
/// A task that was resumed completes exactly once, on the session's delegate queue, whatever happens to its
/// handles: the session's engine holds it until then, and it lets its completion handler go there. A task
/// that was neither resumed nor cancelled when its last handle goes ends without completion.
///
/// All operations may be called on any thread, return at once, and may be called inside any callback.
class CORVANE_EXPORT URLSessionDataTask {
  public:
    static constexpr float lowPriority = 0.25F;
    static constexpr float defaultPriority = 0.5F;
    static constexpr float highPriority = 0.75F;

    virtual ~URLSessionDataTask() = default;
    URLSessionDataTask(const URLSessionDataTask&) = delete;
    URLSessionDataTask& operator=(const URLSessionDataTask&) = delete;

    /// Starts the task, or lets it go on after `suspend`.
    virtual void resume() = 0;

    /// Holds back a task that was not started; of a started one only the completion is held back until
    /// `resume` or `cancel`: the bytes on their way still arrive. Its timeout does not run meanwhile. Without handles
    /// it waits for `URLSession::invalidateAndCancel`.
    virtual void suspend() = 0;

    /// Completes the task with `URLError::cancelled`, started or not; does nothing once its completion is on its
    /// way. Never waits for the network, nor for a name resolver that hangs.
    virtual void cancel() = 0;

    [[nodiscard]] virtual URLSessionTaskState state() const = 0;

    /// Unique within the session.
    [[nodiscard]] virtual std::uint64_t taskIdentifier() const noexcept = 0;

    /// A text of the application's own, for logs.
    [[nodiscard]] virtual std::string taskDescription() const = 0;
    virtual void setTaskDescription(std::string description) = 0;

    /// From 0 to 1: the order in which tasks that wait for a connection get one. Counts as it is at `resume`.
    [[nodiscard]] virtual float priority() const noexcept = 0;
    virtual void setPriority(float priority) noexcept = 0;

    [[nodiscard]] virtual const URLRequest& originalRequest() const noexcept = 0;

    /// The response's head and the failure, once the task has completed.
    [[nodiscard]] virtual std::shared_ptr<const HTTPURLResponse> response() const = 0;
    [[nodiscard]] virtual std::optional<PlatformError> error() const = 0;

  protected:
    URLSessionDataTask() = default;
};

}  // namespace corvane
