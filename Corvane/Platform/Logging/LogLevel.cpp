#include <Corvane/Platform/Logging/LogLevel.hpp>

namespace corvane {

std::string_view description(LogLevel level) noexcept {
    switch (level) {
        case LogLevel::debug:
            return "debug";
        case LogLevel::info:
            return "info";
        case LogLevel::error:
            return "error";
        case LogLevel::off:
            break;
    }
    return "off";
}

}  // namespace corvane
