#pragma once

#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// The areas that the library and its application log under; each is a category of the log subsystem
/// "Corvane".
enum class LogCategory : unsigned char {
    benchmark,
    command,
    concurrency,
    dataCache,
    decoding,
    fileManager,
    unspecified,
    userInterface,
};

/// The category's text in the log: "Benchmark", "Data Cache", ...
[[nodiscard]] CORVANE_EXPORT std::string_view description(LogCategory category) noexcept;

}  // namespace corvane
