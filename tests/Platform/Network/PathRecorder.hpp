#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/Network/NetworkPath.hpp>

namespace corvane {

/// Keeps what a path reports, on any thread.
class PathRecorder final : public NetworkPathCallback {
  public:
    void flagsChanged(NetworkFlags flags) override {
        const std::lock_guard lock(mutex_);
        reports_.push_back(flags.description());
        changed_.notify_all();
    }

    [[nodiscard]] std::string description() const override { return "recorder"; }

    /// Blocks until the last report is `flags`.
    void waitFor(std::string_view flags) const {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !reports_.empty() && reports_.back() == flags; });
    }

    [[nodiscard]] std::vector<std::string> reports() const {
        const std::lock_guard lock(mutex_);
        return reports_;
    }

    /// Makes `path` report to a new recorder, on a serial queue.
    [[nodiscard]] static std::shared_ptr<PathRecorder> watch(NetworkPath& path) {
        auto recorder = std::make_shared<PathRecorder>();
        if (!path.setCallback(recorder) || !path.setDispatchQueue(DispatchQueue::serial("recorder"))) return nullptr;
        return recorder;
    }

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::string> reports_;
};

}  // namespace corvane
