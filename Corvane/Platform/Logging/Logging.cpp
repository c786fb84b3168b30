#include <Corvane/Platform/Logging/Logging.hpp>
#include <Corvane/Platform/Logging/Private/LogChannels.hpp>
#include <Corvane/Platform/Logging/StandardErrorSink.hpp>

namespace corvane {

LogChannels& LogChannels::shared() {
    static auto& channels = *new LogChannels;
    return channels;
}

Logger::Channel& LogChannels::channel(std::string_view subsystem, std::string_view category) {
    const std::lock_guard guard(mutex_);
    return entry(subsystem, category).channel;
}

LogChannels::Entry& LogChannels::entry(std::string_view subsystem, std::string_view category) {
    const auto known = entries_.find(std::pair(subsystem, category));
    if (known != entries_.end()) return known->second;
    auto& [name, made] = *entries_.try_emplace(Name(subsystem, category)).first;
    made.channel.subsystem = name.first;
    made.channel.category = name.second;
    made.channel.level.store(level_, std::memory_order_relaxed);
    return made;
}

LogLevel LogChannels::setLevel(LogLevel level) noexcept {
    const std::lock_guard guard(mutex_);
    for (auto& [name, entry] : entries_) {
        if (!entry.ownLevel) entry.channel.level.store(level, std::memory_order_relaxed);
    }
    return std::exchange(level_, level);
}

std::optional<LogLevel> LogChannels::setOwnLevel(std::optional<LogLevel> level, std::string_view subsystem,
                                                 std::string_view category) {
    const std::lock_guard guard(mutex_);
    Entry& own = entry(subsystem, category);
    own.channel.level.store(level.value_or(level_), std::memory_order_relaxed);
    return std::exchange(own.ownLevel, level);
}

SinkInForce::SinkInForce() : sink_(std::make_shared<StandardErrorSink>()), standardError_(sink_) {}

SinkInForce& SinkInForce::shared() {
    static auto& sink = *new SinkInForce;
    return sink;
}

std::shared_ptr<LogSink> SinkInForce::exchange(std::shared_ptr<LogSink> sink) {
    if (!sink) sink = standardError_;
    const std::lock_guard guard(lock_);
    sink.swap(sink_);
    return sink;
}

LogLevel Logging::setLevel(LogLevel level) noexcept {
    return LogChannels::shared().setLevel(level);
}

std::optional<LogLevel> Logging::setLevel(std::optional<LogLevel> level, std::string_view subsystem,
                                          std::string_view category) {
    return LogChannels::shared().setOwnLevel(level, subsystem, category);
}

std::shared_ptr<LogSink> Logging::setSink(std::shared_ptr<LogSink> sink) {
    return SinkInForce::shared().exchange(std::move(sink));
}

}  // namespace corvane
