#include <system_error>
#include <utility>

#include <Corvane/Platform/Files/Bundle.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Files/Private/DirectoryChoice.hpp>

namespace corvane {
namespace {

/// Never destroyed, like the path below: other threads may outlive static destruction.
DirectoryChoice& choice() {
    static auto& instance = *new DirectoryChoice;
    return instance;
}

/// Beside the executable as it was first looked for.
const std::filesystem::path& ownResources() {
    static const auto& directory = *new std::filesystem::path([] {
        std::error_code ignored;  // The empty path that a failure gives has no resources beside it.
        return std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path() / "resources";
    }());
    return directory;
}

}  // namespace

std::filesystem::path Bundle::resourcesDirectory() {
    return choice().get().value_or(ownResources());
}

void Bundle::setResourcesDirectory(std::optional<std::filesystem::path> directory) {
    choice().set(std::move(directory));
}

std::optional<std::filesystem::path> Bundle::resource(std::string_view name) {
    auto file = FileManager::file(resourcesDirectory(), name);
    std::error_code ignored;  // What cannot be looked for is not there.
    if (!file || !std::filesystem::exists(*file, ignored)) return std::nullopt;
    return *std::move(file);
}

}  // namespace corvane
