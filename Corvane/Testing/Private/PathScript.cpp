#include <utility>

#include <Corvane/Testing/Private/PathScript.hpp>

namespace corvane::testing {

void ScriptedPath::Script::report(NetworkFlags flags) {
    const std::lock_guard lock(mutex_);
    flags_ = flags;
    for (const auto& [path, watch] : watches_) {
        if (!watch.isComplete()) continue;
        if (isHolding_) {
            held_.push_back({watch, flags});
        } else {
            send({watch, flags});
        }
    }
}

void ScriptedPath::Script::send(Report report) {
    DispatchQueue& queue = *report.watch.queue;
    queue.async([callback = std::move(report.watch.callback), flags = report.flags] { callback->flagsChanged(flags); });
}

void ScriptedPath::Script::setFlags(NetworkFlags flags) {
    const std::lock_guard lock(mutex_);
    flags_ = flags;
}

void ScriptedPath::Script::refuse(Step step, std::int32_t code) {
    const std::lock_guard lock(mutex_);
    refusals_[step] = code;
}

void ScriptedPath::Script::allow(Step step) {
    const std::lock_guard lock(mutex_);
    refusals_.erase(step);
}

void ScriptedPath::Script::setHolding(bool holds) {
    const std::lock_guard lock(mutex_);
    isHolding_ = holds;
    if (holds) return;
    // Under the lock, so that no later report overtakes them.
    for (Report& each : std::exchange(held_, {}))
        send(std::move(each));
}

std::vector<std::string> ScriptedPath::Script::targets() const {
    const std::lock_guard lock(mutex_);
    return targets_;
}

std::size_t ScriptedPath::Script::installations() const {
    const std::lock_guard lock(mutex_);
    return installations_;
}

std::size_t ScriptedPath::Script::watchedPaths() const {
    const std::lock_guard lock(mutex_);
    std::size_t count = 0;
    for (const auto& [path, watch] : watches_)
        count += watch.isComplete() ? 1U : 0U;
    return count;
}

NetworkPath::Result<void> ScriptedPath::Script::check(Step step) const {
    if (const auto refusal = refusals_.find(step); refusal != refusals_.end()) {
        return std::unexpected(NetworkPathError{refusal->second});
    }
    return {};
}

NetworkPath::Result<void> ScriptedPath::Script::create(Step step, const std::string& target) {
    const std::lock_guard lock(mutex_);
    if (auto checked = check(step); !checked) return checked;
    targets_.push_back(target);
    return {};
}

NetworkPath::Result<void> ScriptedPath::Script::setCallback(const void* path,
                                                            std::shared_ptr<NetworkPathCallback> callback) {
    // The former callback is let go after the lock.
    const std::lock_guard lock(mutex_);
    if (callback) {
        if (auto checked = check(Step::setCallback); !checked) return checked;
        ++installations_;
    }
    watches_[path].callback.swap(callback);
    return {};
}

NetworkPath::Result<void> ScriptedPath::Script::setDispatchQueue(const void* path,
                                                                 std::shared_ptr<DispatchQueue> queue) {
    const std::lock_guard lock(mutex_);
    if (queue) {
        if (auto checked = check(Step::setDispatchQueue); !checked) return checked;
    }
    watches_[path].queue.swap(queue);
    return {};
}

NetworkPath::Result<NetworkFlags> ScriptedPath::Script::flags() const {
    const std::lock_guard lock(mutex_);
    if (auto checked = check(Step::readFlags); !checked) return std::unexpected(checked.error());
    return flags_;
}

std::shared_ptr<NetworkPathCallback> ScriptedPath::Script::callback(const void* path) const {
    const std::lock_guard lock(mutex_);
    const auto watch = watches_.find(path);
    return watch == watches_.end() ? nullptr : watch->second.callback;
}

void ScriptedPath::Script::pathEnded(const void* path) {
    // What the path held ends after the lock.
    std::unordered_map<const void*, Watch>::node_type ended;
    const std::lock_guard lock(mutex_);
    ended = watches_.extract(path);
}

}  // namespace corvane::testing
