#include <Corvane/Core/Loggers.hpp>

namespace corvane {

namespace {

template <LogCategory category>
const Logger& shared() noexcept {
    static const Logger logger = Loggers::of(category);
    return logger;
}

}  // namespace

Logger Loggers::of(LogCategory category) {
    return {subsystem, description(category)};
}

const Logger& Loggers::command() noexcept {
    return shared<LogCategory::command>();
}

const Logger& Loggers::concurrency() noexcept {
    return shared<LogCategory::concurrency>();
}

const Logger& Loggers::decoding() noexcept {
    return shared<LogCategory::decoding>();
}

const Logger& Loggers::fileManager() noexcept {
    return shared<LogCategory::fileManager>();
}

const Logger& Loggers::unspecified() noexcept {
    return shared<LogCategory::unspecified>();
}

const Logger& Loggers::userInterface() noexcept {
    return shared<LogCategory::userInterface>();
}

Logger Loggers::customDebugName(std::string_view /*name*/) {
    return unspecified();
}

}  // namespace corvane
