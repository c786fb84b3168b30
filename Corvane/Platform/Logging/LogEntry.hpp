#pragma once

#include <string_view>

#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Logging/LogLevel.hpp>
#include <Corvane/Platform/Logging/LogOrigin.hpp>

namespace corvane {

/// One message on its way to a sink. The texts belong to the caller and live for the call only.
struct LogEntry {
    LogLevel level = LogLevel::info;
    std::string_view subsystem;
    std::string_view category;
    std::string_view message;
    /// On the clock in force.
    Date time;
    /// Where the message comes from; line 0 when that is not known.
    LogOrigin origin;
};

}  // namespace corvane
