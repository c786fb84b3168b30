#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// The files that the application is shipped with. All operations may be called on any thread.
class CORVANE_EXPORT Bundle {
  public:
    Bundle() = delete;

    /// The directory of these files: what the application chose or, without a choice, "resources" beside the
    /// executable. It need not exist.
    [[nodiscard]] static std::filesystem::path resourcesDirectory();

    /// Makes `directory` the resources directory; a relative one is completed with the current directory once, now.
    /// Absent stands for the one beside the executable.
    static void setResourcesDirectory(std::optional<std::filesystem::path> directory);

    /// The path of the resource `name`, its extension included; absent when there is none, or the name is not a single
    /// component (see `FileManager::file`).
    [[nodiscard]] static std::optional<std::filesystem::path> resource(std::string_view name);
};

}  // namespace corvane
