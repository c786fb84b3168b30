#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/Logging/Logger.hpp>
#include <Corvane/Platform/Logging/Private/LogChannels.hpp>

namespace corvane {

Logger::Logger(std::string_view subsystem, std::string_view category)
    : channel_(&LogChannels::shared().channel(subsystem, category)) {}

std::string_view Logger::subsystem() const noexcept {
    return channel_->subsystem;
}

std::string_view Logger::category() const noexcept {
    return channel_->category;
}

void Logger::write(LogLevel level, std::string_view message, const LogOrigin& where) const noexcept {
    const auto sink = SinkInForce::shared().get();
    sink->write({level, channel_->subsystem, channel_->category, message, Clock::current().now(), where});
}

}  // namespace corvane
