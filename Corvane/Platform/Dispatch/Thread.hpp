#pragma once

#include <source_location>

#include <Corvane/Export.hpp>

namespace corvane {

/// Questions about the calling thread.
class CORVANE_EXPORT Thread {
  public:
    Thread() = delete;

    /// Whether the caller runs on the process's first thread, which carries the main run loop.
    [[nodiscard]] static bool isMainThread() noexcept;

    /// Stops the process unless the current executor is the main executor, with the message "Incorrect actor
    /// executor assumption; Expected same executor as " followed by the expected executor.
    static void assumeMainExecutor(std::source_location where = std::source_location::current());
};

}  // namespace corvane
