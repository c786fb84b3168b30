#pragma once

#include <filesystem>
#include <optional>

#include <Corvane/Export.hpp>

namespace corvane {

/// Where the application keeps its files. All operations may be called on any thread.
class CORVANE_EXPORT FileManager {
  public:
    FileManager() = delete;

    /// The user's documents directory, an absolute path: what the application chose or, without a choice, "Documents"
    /// in the home directory of the account that the process runs under, as the user database has it. Environment
    /// variables do not count. It need not exist. Absent when the account has no home directory, or when the
    /// application chose to have none.
    [[nodiscard]] static std::optional<std::filesystem::path> documentsDirectory();

    /// Makes `directory` the documents directory; a relative one is completed with the current directory once, now. The
    /// empty path stands for having none, absent for the account's own.
    static void setDocumentsDirectory(std::optional<std::filesystem::path> directory);
};

}  // namespace corvane
