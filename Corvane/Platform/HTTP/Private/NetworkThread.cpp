#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <csignal>
#include <new>
#include <thread>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/MainQueueBatch.hpp>
#include <Corvane/Platform/HTTP/Private/ConnectivityGate.hpp>
#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/Private/NetworkThread.hpp>
#include <Corvane/Platform/HTTP/Private/RequestRules.hpp>
#include <Corvane/Platform/HTTP/Private/Session.hpp>

namespace corvane::http {

namespace {

CURLM* makeMulti() {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* const multi = curl_multi_init();
    if (multi == nullptr) throw std::bad_alloc();
    // Idle connections kept; by default the cache shrinks with the number of transfers.
    curl_multi_setopt(multi, CURLMOPT_MAXCONNECTS, 128L);
    return multi;
}

int makeWakeDescriptor() noexcept {
    return ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

/// How often the thread looks for work when nobody can wake it, in milliseconds.
constexpr int lookInterval = 20;

/// The part of a request's timeout that it waits for connectivity, and then the part that it is given to succeed
/// without.
constexpr double patienceWithoutNetwork = 0.5;

enum class Scheme : unsigned char { unknown, basic, digest };

Scheme schemeOf(std::string_view wwwAuthenticate) noexcept {
    const auto scheme = wwwAuthenticate.substr(0, wwwAuthenticate.find(' '));
    if (equalNames(scheme, "Basic")) return Scheme::basic;
    return equalNames(scheme, "Digest") ? Scheme::digest : Scheme::unknown;
}

}  // namespace

NetworkThread& NetworkThread::shared() {
    // Leaked: tasks may still be on their way when static destructors run.
    static auto* const thread = new NetworkThread;
    return *thread;
}

NetworkThread::NetworkThread() : multi_(makeMulti()), wakeDescriptor_(makeWakeDescriptor()) {
    ClockClients::add(*this);
    // A thread starts with its maker's mask. All signals are the application's business, and a peer that
    // hangs up in the middle of a TLS write must not raise SIGPIPE.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread([this] { run(); });
    pthread_setname_np(thread.native_handle(), "corvane-network");
    thread.detach();
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void NetworkThread::submit(std::shared_ptr<DataTask> task, Command command) {
    bool wakes = false;
    {
        const std::lock_guard lock(mutex_);
        submissions_.push_back({std::move(task), command});
        ++accepted_;
        wakes = std::exchange(isAsleep_, false);
    }
    if (wakes) wakeUp();
}

ClockActivity NetworkThread::activity() const noexcept {
    const std::lock_guard lock(mutex_);
    return {.nextDeadline = deadlines_.next(), .accepted = accepted_, .finished = finished_};
}

void NetworkThread::clockMoved() noexcept {
    bool wakes = false;
    {
        const std::lock_guard lock(mutex_);
        wakes = std::exchange(isAsleep_, false);
    }
    if (wakes) wakeUp();
}

void NetworkThread::wakeUp() const noexcept {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wakeDescriptor_, &one, sizeof one);
}

void NetworkThread::run() {
    for (;;) {
        takeSubmissions();
        expire();
        perform();
        // What the first pass read for streams it had already passed.
        if (secureOnWire_ > 0) perform();
        sleep(prepareToSleep());
    }
}

void NetworkThread::perform() {
    do {
        hasNews_ = false;
        ++turn_;
        int running = 0;
        curl_multi_perform(multi_, &running);
        reap();
    } while (hasNews_);
}

void NetworkThread::sleep(int milliseconds) {
    if (milliseconds == 0) return;
    if (wakeDescriptor_ < 0) {
        // A short sleep all the same: who has submitted meanwhile had nothing to wake us with.
        wakeDescriptor_ = makeWakeDescriptor();
        milliseconds = std::min(milliseconds, lookInterval);
    }
    const bool isShort = secureOnWire_ > 0 && quietMilliseconds_ < milliseconds;
    // libcurl has a wake-up of its own, but over a pair of sockets, which takes the kernel longer.
    curl_waitfd wake{.fd = wakeDescriptor_, .events = CURL_WAIT_POLLIN, .revents = 0};
    int ready = 0;
    curl_multi_poll(multi_, &wake, 1, isShort ? quietMilliseconds_ : milliseconds, &ready);
    quietMilliseconds_ = ready > 0 ? 1 : std::min(quietMilliseconds_, INT_MAX / 2) * 2;
    if (wake.revents == 0) return;
    std::uint64_t count = 0;
    [[maybe_unused]] const auto read = ::read(wakeDescriptor_, &count, sizeof count);
}

int NetworkThread::prepareToSleep() {
    const std::lock_guard lock(mutex_);
    if (!submissions_.empty()) return 0;
    const SteadyInstant next = deadlines_.next();
    int milliseconds = INT_MAX;
    if (next != SteadyInstant::max()) {
        if (const auto wait = Clock::current().timeToWait(next)) {
            const auto whole = std::chrono::ceil<std::chrono::milliseconds>(*wait).count();
            milliseconds = static_cast<int>(std::clamp<std::int64_t>(whole, 0, INT_MAX));
        }
    }
    isAsleep_ = milliseconds != 0;
    return milliseconds;
}

void NetworkThread::takeSubmissions() {
    {
        const std::lock_guard lock(mutex_);
        isAsleep_ = false;
        if (submissions_.empty()) return;
        batch_.swap(submissions_);
    }
    for (auto& submission : batch_) {
        switch (submission.command) {
            case Command::start:
                begin(submission.task);
                break;
            case Command::update:
                update(*submission.task);
                break;
            case Command::release:
                release(submission.task, 1);
                break;
        }
    }
    const std::size_t count = batch_.size();
    batch_.clear();
    {
        const std::lock_guard lock(mutex_);
        finished_ += count;
    }
    ClockClients::announceChange();
}

void NetworkThread::expire() {
    for (;;) {
        std::shared_ptr<DataTask> task;
        {
            const std::lock_guard lock(mutex_);
            if (deadlines_.empty()) return;
            task = deadlines_.takeDue(Clock::current().uptime());
            if (!task) return;
            ++accepted_;
        }
        if (task->transit.stage == DataTask::Stage::held) {
            // The network has not come back: whether it is as bad as it looks is found out in the time that is left.
            release(task, patienceWithoutNetwork);
        } else {
            fail(task, makeURLError(URLError::timedOut));
        }
        {
            const std::lock_guard lock(mutex_);
            ++finished_;
        }
        ClockClients::announceChange();
    }
}

void NetworkThread::reap() {
    const MainQueueBatch batch;
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi_, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        // The message is libcurl's until the handle is removed.
        const CURLcode code = message->data.result;
        auto& task = static_cast<DataTask&>(Exchange::of(message->easy_handle).observer());
        ended(task.shared_from_this(), code);
    }
}

void NetworkThread::begin(const std::shared_ptr<DataTask>& task) {
    const auto session = task->beginTransit();
    if (!session) return;
    const bool isHeld = holdBack(task, *session);
    static_cast<void>(task->restartTimeout());
    {
        const std::lock_guard lock(mutex_);
        deadlines_.arm(task);
    }
    if (isHeld) return;
    if (session->slots.acquire(task->nextRequest().url().origin(), task->priority(), task)) {
        launch(task);
    } else {
        task->transit.stage = DataTask::Stage::waiting;
    }
}

bool NetworkThread::holdBack(const std::shared_ptr<DataTask>& task, const Session& session) {
    DataTask::Transit& transit = task->transit;
    ConnectivityGate* const gate = session.gate();
    if (gate == nullptr || std::exchange(transit.wasAtGate, true)) return false;
    const auto& proxy = session.configuration().proxy;
    const auto proxyURL = proxy ? URL::parse(*proxy) : std::nullopt;
    const URL& next = proxyURL ? *proxyURL : task->nextRequest().url();
    if (gate->admits(next.host()) || !gate->hold(task)) return false;
    transit.stage = DataTask::Stage::held;
    transit.patience = patienceWithoutNetwork;
    task->tellOfWaiting();
    return true;
}

void NetworkThread::release(const std::shared_ptr<DataTask>& task, double patience) {
    if (task->transit.stage != DataTask::Stage::held) return;
    leave(task);
    task->transit.patience = patience;
    if (!task->askAboutDelay()) begin(task);
}

void NetworkThread::launch(const std::shared_ptr<DataTask>& task) {
    DataTask::Transit& transit = task->transit;
    const URLRequest& request = task->nextRequest();
    transit.stage = DataTask::Stage::onWire;
    if (request.url().scheme() == "https") ++secureOnWire_;
    transit.exchange = transit.session->takeExchange();
    const auto& login = transit.loginOrigin == request.url().origin() ? transit.login : std::nullopt;
    if (!transit.exchange->prepare(request, login, task->idleSeconds(), *task) ||
        curl_multi_add_handle(multi_, transit.exchange->handle()) != CURLM_OK) {
        fail(task, makeURLError(URLError::unknown, "The transfer could not be started."));
        return;
    }
    hasNews_ = true;
}

void NetworkThread::update(DataTask& task) {
    if (task.transit.stage == DataTask::Stage::outside) return;
    if (task.hasOutcome()) {
        leave(task.shared_from_this());
        return;
    }
    task.transit.isSuspended = task.isSuspended();
    if (task.restartTimeout()) {
        const std::lock_guard lock(mutex_);
        deadlines_.hasten(task);
    }
}

void NetworkThread::leave(const std::shared_ptr<DataTask>& task) {
    DataTask::Transit& transit = task->transit;
    const auto session = std::exchange(transit.session, nullptr);
    const std::string& origin = task->nextRequest().url().origin();
    {
        const std::lock_guard lock(mutex_);
        // The caller holds the task: it does not end here, under the lock.
        deadlines_.remove(*task);
    }
    const auto stage = std::exchange(transit.stage, DataTask::Stage::outside);
    if (stage == DataTask::Stage::held) {
        session->gate()->withdraw(*task);
        return;
    }
    if (stage == DataTask::Stage::waiting) {
        session->slots.withdraw(origin, task);
        return;
    }
    if (task->nextRequest().url().scheme() == "https") --secureOnWire_;
    quietMilliseconds_ = 1;
    curl_multi_remove_handle(multi_, transit.exchange->handle());
    transit.exchange->clear();
    session->putBack(std::exchange(transit.exchange, nullptr));
    if (const auto next = session->slots.release(origin)) launch(next);
}

void NetworkThread::fail(const std::shared_ptr<DataTask>& task, PlatformError error) {
    const auto& exchange = task->transit.exchange;
    TaskOutcome outcome{.response = exchange ? exchange->takeResponse() : nullptr, .error = std::move(error)};
    leave(task);
    task->finishHere(std::move(outcome));
}

void NetworkThread::ended(const std::shared_ptr<DataTask>& task, CURLcode code) {
    Exchange& exchange = *task->transit.exchange;
    if (const URL& url = task->nextRequest().url(); url.scheme() == "https" && exchange.head().isFinal()) {
        auto& slots = task->transit.session->slots;
        for (const auto& admitted : slots.setMultiplexed(url.origin(), exchange.head().isHTTP2()))
            launch(admitted);
    }
    if (exchange.isRedirected()) {
        followRedirect(task);
        return;
    }
    if (auto failure = exchange.failure(code)) {
        fail(task, std::move(*failure));
        return;
    }
    if (exchange.head().statusCode() == 401 && poseChallenge(task)) return;
    TaskOutcome outcome{.data = exchange.takeBody(), .response = exchange.takeResponse()};
    leave(task);
    task->finishHere(std::move(outcome));
}

void NetworkThread::followRedirect(const std::shared_ptr<DataTask>& task) {
    ResponseHead& head = task->transit.exchange->head();
    if (++task->transit.redirects > maximumRedirects) {
        fail(task, makeURLError(URLError::httpTooManyRedirects));
        return;
    }
    auto next = redirected(task->nextRequest(), head.statusCode(), head.value("Location").value_or(""),
                           task->transit.session->configuration().originBoundFields);
    if (!next) {
        fail(task, std::move(next.error()));
        return;
    }
    leave(task);
    task->transit.request = std::move(*next);
    begin(task);
}

bool NetworkThread::poseChallenge(const std::shared_ptr<DataTask>& task) {
    DataTask::Transit& transit = task->transit;
    if (!transit.session->delegate()) return false;
    Exchange& exchange = *transit.exchange;
    URLAuthenticationChallenge challenge{
        .url = task->nextRequest().url(),
        .wwwAuthenticate = std::string(exchange.head().value("WWW-Authenticate").value_or(""))};
    const Scheme scheme = schemeOf(challenge.wwwAuthenticate);
    if (scheme == Scheme::unknown) return false;
    if (transit.login && transit.loginOrigin == challenge.url.origin()) ++transit.refusedLogins;
    challenge.previousFailureCount = transit.refusedLogins;
    TaskOutcome outcome{.data = exchange.takeBody(), .response = exchange.takeResponse()};
    leave(task);
    task->ask(std::move(challenge), scheme == Scheme::digest, std::move(outcome));
    return true;
}

}  // namespace corvane::http
