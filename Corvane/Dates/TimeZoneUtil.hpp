#pragma once

#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// The device's offset from GMT as a number and as a label. The operating system's zone is meant, whatever the
/// application has put in force. Any thread.
struct CORVANE_EXPORT TimeZoneUtil {
    TimeZoneUtil() = delete;

    /// How many seconds the operating system's zone is ahead of GMT now, on the clock in force.
    [[nodiscard]] static int getDeviceTimeZone();

    /// The label of that offset.
    [[nodiscard]] static std::string getTimeZoneOffset();

    /// The label of an offset in seconds: hours, then minutes behind a point unless there are none, a minus sign but
    /// never a plus sign: "1", "5.30", "-3.30", "0". Seconds are cut off.
    [[nodiscard]] static std::string getTimeZoneOffset(int timezoneOffset);
};

}  // namespace corvane
