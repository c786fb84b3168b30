#include <condition_variable>
#include <mutex>
#include <utility>

#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/Logging/LogEntry.hpp>
#include <Corvane/Platform/Logging/Logging.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

namespace corvane::testing {

class LogRecorder::Sink final : public LogSink {
  public:
    void write(const LogEntry& entry) noexcept override {
        {
            const std::lock_guard guard(mutex_);
            entries_.push_back({entry.level, std::string(entry.subsystem), std::string(entry.category),
                                std::string(entry.message), entry.time, entry.origin, std::this_thread::get_id(),
                                Thread::isMainThread()});
        }
        recorded_.notify_all();
    }

    std::vector<Entry> entries() const {
        const std::lock_guard guard(mutex_);
        return entries_;
    }

    void clear() {
        const std::lock_guard guard(mutex_);
        entries_.clear();
    }

    void waitForEntries(std::size_t count) {
        std::unique_lock guard(mutex_);
        recorded_.wait(guard, [&] { return entries_.size() >= count; });
    }

  private:
    mutable std::mutex mutex_;
    std::condition_variable recorded_;
    std::vector<Entry> entries_;
};

LogRecorder::LogRecorder(LogLevel level)
    : sink_(std::make_shared<Sink>()), formerSink_(Logging::setSink(sink_)), formerLevel_(Logging::setLevel(level)) {}

LogRecorder::~LogRecorder() {
    Logging::setLevel(formerLevel_);
    Logging::setSink(std::move(formerSink_));
}

std::vector<LogRecorder::Entry> LogRecorder::entries() const {
    return sink_->entries();
}

std::vector<std::string> LogRecorder::messages(std::optional<std::string_view> category) const {
    std::vector<std::string> messages;
    for (Entry& entry : sink_->entries()) {
        if (!category || entry.category == *category) messages.push_back(std::move(entry.message));
    }
    return messages;
}

void LogRecorder::clear() {
    sink_->clear();
}

void LogRecorder::waitForEntries(std::size_t count) const {
    sink_->waitForEntries(count);
}

}  // namespace corvane::testing
