#include <cstdlib>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Dates/TimeZoneUtil.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane {

int TimeZoneUtil::getDeviceTimeZone() {
    return TimeZone::system().secondsFromGMT();
}

std::string TimeZoneUtil::getTimeZoneOffset() {
    return getTimeZoneOffset(getDeviceTimeZone());
}

std::string TimeZoneUtil::getTimeZoneOffset(int timezoneOffset) {
    const int hours = std::abs(timezoneOffset / 3600);
    const int minutes = std::abs(timezoneOffset % 3600 / 60);
    // Of less than a minute behind GMT, the sign is left, deliberately: "-0".
    const std::string_view sign = timezoneOffset < 0 ? "-" : "";
    if (minutes == 0) return fmt::format(FMT_COMPILE("{}{}"), sign, hours);
    return fmt::format(FMT_COMPILE("{}{}.{:02}"), sign, hours, minutes);
}

}  // namespace corvane
