#include <utility>

#include <Corvane/Platform/Dispatch/Private/InPlace.hpp>
#include <Corvane/Platform/HTTP/Private/BriefCompletion.hpp>
#include <Corvane/Platform/HTTP/Private/DataTask.hpp>
#include <Corvane/Platform/HTTP/Private/NetworkThread.hpp>
#include <Corvane/Platform/HTTP/Private/RequestRules.hpp>
#include <Corvane/Platform/HTTP/Private/Session.hpp>

namespace corvane::http {

namespace {

double idleSecondsOf(const URLRequest& request, const URLSessionConfiguration& configuration) noexcept {
    if (request.statesTimeoutInterval()) return request.timeoutInterval();
    const double ofSession = configuration.timeoutIntervalForRequest;
    return ofSession > 0 ? ofSession : URLRequest::defaultTimeoutInterval;
}

}  // namespace

DataTask::DataTask(std::shared_ptr<Session> session, std::uint64_t identifier, URLRequest request,
                   URLSession::CompletionHandler completionHandler, bool isRefused)
    : identifier_(identifier),
      request_(std::move(request)),
      idleSeconds_(idleSecondsOf(request_, session->configuration())),
      session_(std::move(session)),
      completionHandler_(std::move(completionHandler)),
      isRefused_(isRefused) {}

DataTask::~DataTask() {
    if (session_) session_->taskEnded(identifier_);
}

void DataTask::resume() {
    std::unique_lock lock(mutex_);
    if (isPosted_ || state_ != URLSessionTaskState::suspended) return;
    state_ = URLSessionTaskState::running;
    const std::shared_ptr<Session> session = session_;
    if (hasOutcome_) {
        const auto parked = std::exchange(parked_, nullptr);
        isPosted_ = true;
        lock.unlock();
        post(*session);
        return;
    }
    const bool isFirst = !std::exchange(isStarted_, true);
    lock.unlock();
    if (!isFirst) {
        NetworkThread::shared().update(shared_from_this());
        return;
    }
    std::optional<PlatformError> refusal =
        isRefused_ ? makeURLError(URLError::cancelled, "The session has been invalidated.") : problem(request_);
    if (!refusal) refusal = problem(session->configuration().httpAdditionalHeaders);
    if (refusal) {
        finish({.error = std::move(refusal)});
    } else {
        NetworkThread::shared().start(shared_from_this());
    }
}

void DataTask::suspend() {
    std::unique_lock lock(mutex_);
    if (isPosted_ || state_ != URLSessionTaskState::running) return;
    state_ = URLSessionTaskState::suspended;
    const bool matters = !hasOutcome_;
    lock.unlock();
    if (matters) NetworkThread::shared().update(shared_from_this());
}

void DataTask::cancel() {
    std::unique_lock lock(mutex_);
    if (isPosted_) return;
    isPosted_ = true;
    const bool isUnderWay = isStarted_ && !std::exchange(hasOutcome_, true);
    hasOutcome_ = true;
    outcome_ = {.error = makeURLError(URLError::cancelled)};
    state_ = URLSessionTaskState::canceling;
    const std::shared_ptr<Session> session = session_;
    const auto parked = std::exchange(parked_, nullptr);
    lock.unlock();
    post(*session);
    if (isUnderWay) NetworkThread::shared().update(shared_from_this());
}

std::shared_ptr<Session> DataTask::accept(TaskOutcome outcome) {
    const std::lock_guard lock(mutex_);
    if (hasOutcome_) return nullptr;
    hasOutcome_ = true;
    outcome_ = std::move(outcome);
    if (state_ == URLSessionTaskState::suspended) {
        parked_ = shared_from_this();
        return nullptr;
    }
    isPosted_ = true;
    return session_;
}

void DataTask::finish(TaskOutcome outcome) {
    if (const auto session = accept(std::move(outcome))) post(*session);
}

void DataTask::finishHere(TaskOutcome outcome) {
    const auto session = accept(std::move(outcome));
    if (!session) return;
    // A delegate is the user's, and may end with its session.
    if (isBrief_ && !session->delegate()) {
        InPlace::run(session->delegateQueue(), [self = shared_from_this()] { self->deliver(); });
    } else {
        post(*session);
    }
}

void DataTask::post(Session& session) {
    session.delegateQueue().async([self = shared_from_this()] { self->deliver(); });
}

void DataTask::deliver() {
    std::unique_lock lock(mutex_);
    state_ = URLSessionTaskState::completed;
    const std::shared_ptr<Session> session = std::exchange(session_, nullptr);
    URLSession::CompletionHandler handler = std::exchange(completionHandler_, nullptr);
    std::optional<Data> data = std::exchange(outcome_.data, std::nullopt);
    std::shared_ptr<const HTTPURLResponse> response = outcome_.response;
    std::optional<PlatformError> error = outcome_.error;
    lock.unlock();
    if (handler) {
        handler(std::move(data), std::move(response), std::move(error));
        // Before the session may be told that its last task is over.
        handler = nullptr;
    } else if (const auto delegate = session->delegate()) {
        if (data && !data->empty()) delegate->dataTaskDidReceiveData(*session, *this, *data);
        delegate->taskDidComplete(*session, *this, std::move(error));
    }
    session->taskEnded(identifier_);
}

void DataTask::ask(URLAuthenticationChallenge challenge, bool wantsDigest, TaskOutcome outcome) {
    std::unique_lock lock(mutex_);
    if (hasOutcome_) return;
    const std::shared_ptr<Session> session = session_;
    lock.unlock();
    session->delegateQueue().async(
        [self = shared_from_this(), challenge = std::move(challenge), wantsDigest,
         outcome = std::move(outcome)]() mutable { self->answer(challenge, wantsDigest, std::move(outcome)); });
}

void DataTask::answer(const URLAuthenticationChallenge& challenge, bool wantsDigest, TaskOutcome outcome) {
    std::unique_lock lock(mutex_);
    if (hasOutcome_) return;
    const std::shared_ptr<Session> session = session_;
    lock.unlock();
    URLSessionAuthChallengeDecision decision;
    if (const auto delegate = session->delegate()) {
        decision = delegate->taskDidReceiveChallenge(*session, *this, challenge);
    }
    switch (decision.disposition) {
        case URLSessionAuthChallengeDisposition::cancelAuthenticationChallenge:
            finish({.response = std::move(outcome.response), .error = makeURLError(URLError::cancelled)});
            return;
        case URLSessionAuthChallengeDisposition::useCredential:
            if (!decision.credential) break;
            lock.lock();
            login_ = Login{std::move(*decision.credential), wantsDigest};
            lock.unlock();
            NetworkThread::shared().start(shared_from_this());
            return;
        case URLSessionAuthChallengeDisposition::performDefaultHandling:
            break;
    }
    finish(std::move(outcome));
}

void DataTask::tellOfWaiting() {
    if (!transit.session->delegate()) return;
    const std::shared_ptr<Session> session = transit.session;
    session->delegateQueue().async([self = shared_from_this(), session] {
        const auto delegate = session->delegate();
        if (delegate && !self->hasOutcome()) delegate->taskIsWaitingForConnectivity(*session, *self);
    });
}

bool DataTask::askAboutDelay() {
    std::unique_lock lock(mutex_);
    const std::shared_ptr<Session> session = session_;
    if (hasOutcome_ || !session->delegate()) return false;
    lock.unlock();
    session->delegateQueue().async([self = shared_from_this(), session] { self->answerAboutDelay(session); });
    return true;
}

void DataTask::answerAboutDelay(const std::shared_ptr<Session>& session) {
    if (hasOutcome()) return;
    URLSessionDelayedRequestDecision decision;
    if (const auto delegate = session->delegate()) {
        decision = delegate->taskWillBeginDelayedRequest(*session, *this, request_);
    }
    if (decision.disposition == URLSessionDelayedRequestDisposition::cancel) {
        cancel();
        return;
    }
    if (decision.disposition == URLSessionDelayedRequestDisposition::useNewRequest && decision.newRequest) {
        if (auto refusal = problem(*decision.newRequest)) {
            finish({.error = std::move(refusal)});
            return;
        }
        const std::lock_guard lock(mutex_);
        newRequest_ = std::move(decision.newRequest);
    }
    NetworkThread::shared().start(shared_from_this());
}

std::shared_ptr<Session> DataTask::beginTransit() {
    const std::lock_guard lock(mutex_);
    if (hasOutcome_) return nullptr;
    transit.session = session_;
    transit.turn = 0;
    // Made a part of the first request, so that a redirect treats them as it treats the request's own.
    if (const auto& additional = session_->configuration().httpAdditionalHeaders;
        newRequest_ || (!additional.empty() && !transit.request)) {
        const URLRequest first = std::exchange(newRequest_, std::nullopt).value_or(request_);
        transit.request = first;
        for (const auto& field : additional) {
            if (!first.value(field.name)) transit.request->addValue(field.value, field.name);
        }
    }
    transit.isSuspended = state_ == URLSessionTaskState::suspended;
    const URL& url = nextRequest().url();
    if (login_) {
        transit.login = std::exchange(login_, std::nullopt);
        transit.loginOrigin = url.origin();
    } else if (!transit.login && url.user()) {
        transit.login = Login{{*url.user(), url.password().value_or("")}};
        transit.loginOrigin = url.origin();
    }
    return session_;
}

bool DataTask::restartTimeout() noexcept {
    return moveTo(transit.isSuspended ? SteadyInstant::max() : deadlineAfter(idleSeconds_ * transit.patience));
}

void DataTask::bytesMoved() noexcept {
    const std::uint64_t turn = NetworkThread::shared().turn();
    // A head comes line by line, and the time of each line has to be asked for.
    if (std::exchange(transit.turn, turn) == turn) return;
    transit.patience = 1;
    static_cast<void>(restartTimeout());
}

bool DataTask::hasOutcome() const {
    const std::lock_guard lock(mutex_);
    return hasOutcome_;
}

bool DataTask::isSuspended() const {
    const std::lock_guard lock(mutex_);
    return state_ == URLSessionTaskState::suspended;
}

URLSessionTaskState DataTask::state() const {
    const std::lock_guard lock(mutex_);
    return state_;
}

std::string DataTask::taskDescription() const {
    const std::lock_guard lock(mutex_);
    return description_;
}

void DataTask::setTaskDescription(std::string description) {
    const std::lock_guard lock(mutex_);
    description_.swap(description);
}

std::shared_ptr<const HTTPURLResponse> DataTask::response() const {
    const std::lock_guard lock(mutex_);
    return state_ == URLSessionTaskState::completed ? outcome_.response : nullptr;
}

std::optional<PlatformError> DataTask::error() const {
    const std::lock_guard lock(mutex_);
    return state_ == URLSessionTaskState::completed ? outcome_.error : std::nullopt;
}

void completeInPlace(URLSessionDataTask& task) noexcept {
    // A session may be the application's own, and its tasks too.
    if (auto* const ours = dynamic_cast<DataTask*>(&task)) ours->setBrief();
}

}  // namespace corvane::http
