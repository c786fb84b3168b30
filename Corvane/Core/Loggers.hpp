#pragma once

#include <string_view>

#include <Corvane/Core/LogCategory.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/Logger.hpp>

namespace corvane {

/// The loggers of the log subsystem "Corvane", one per category, made on first use. Any thread.
class CORVANE_EXPORT Loggers {
  public:
    /// The log subsystem of everything the library writes.
    static constexpr std::string_view subsystem = "Corvane";

    Loggers() = delete;

    /// The logger of any category: "Benchmark" and "Data Cache" are the application's to use.
    [[nodiscard]] static Logger of(LogCategory category);

    [[nodiscard]] static const Logger& command() noexcept;
    [[nodiscard]] static const Logger& concurrency() noexcept;
    [[nodiscard]] static const Logger& decoding() noexcept;
    [[nodiscard]] static const Logger& fileManager() noexcept;
    [[nodiscard]] static const Logger& unspecified() noexcept;
    [[nodiscard]] static const Logger& userInterface() noexcept;

    /// A logger of the category "Unspecified"; deliberately whatever `name` is.
    [[nodiscard]] static Logger customDebugName(std::string_view name);
};

}  // namespace corvane
