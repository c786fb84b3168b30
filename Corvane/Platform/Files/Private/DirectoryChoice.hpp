#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

/// A directory that the application may choose. Any thread.
class DirectoryChoice {
  public:
    [[nodiscard]] std::optional<std::filesystem::path> get() {
        const std::lock_guard guard(lock_);
        return directory_;
    }

    /// A relative path is completed now; it would lead elsewhere whenever the current directory changes.
    void set(std::optional<std::filesystem::path> directory) {
        if (directory && directory->is_relative() && !directory->empty()) {
            std::error_code failure;  // There may be no current directory, and then the path leads nowhere anyway.
            auto completed = std::filesystem::absolute(*directory, failure);
            if (!failure) directory = std::move(completed);
        }
        const std::lock_guard guard(lock_);
        directory_.swap(directory);
    }

  private:
    UnfairLock lock_;
    std::optional<std::filesystem::path> directory_;
};

}  // namespace corvane
