#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>
#include <vector>

#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Files/Private/DirectoryChoice.hpp>
#include <Corvane/Platform/Private/POSIXError.hpp>

namespace corvane {
namespace {

/// Never destroyed: other threads may outlive static destruction.
DirectoryChoice& choice() {
    static auto& instance = *new DirectoryChoice;
    return instance;
}

/// The home directory of the process's account; empty without one.
std::filesystem::path readHomeDirectory() {
    constexpr std::size_t usualRecord = 1024;
    constexpr std::size_t largestRecord = std::size_t{1} << 20;
    std::vector<char> record(usualRecord);
    ::passwd account{};
    ::passwd* found = nullptr;
    int failure = 0;
    do {
        failure = ::getpwuid_r(::geteuid(), &account, record.data(), record.size(), &found);
        if (failure == ERANGE) record.resize(record.size() * 2);
    } while (failure == EINTR || (failure == ERANGE && record.size() <= largestRecord));
    if (found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/') return {};
    return found->pw_dir;
}

/// The user database may be a server away, so it is asked once.
const std::filesystem::path& homeDirectory() {
    static const auto& home = *new std::filesystem::path(readHomeDirectory());
    return home;
}

}  // namespace

std::optional<std::filesystem::path> FileManager::documentsDirectory() {
    std::optional<std::filesystem::path> directory = choice().get();
    if (!directory && !homeDirectory().empty()) directory = homeDirectory() / "Documents";
    if (directory && directory->empty()) directory.reset();
    return directory;
}

void FileManager::setDocumentsDirectory(std::optional<std::filesystem::path> directory) {
    choice().set(std::move(directory));
}

std::expected<std::filesystem::path, PlatformError> FileManager::file(const std::filesystem::path& directory,
                                                                      std::string_view name) {
    const bool leadsElsewhere = name.empty() || name == "." || name == ".." ||
                                name.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos;
    if (leadsElsewhere) return std::unexpected(posixError(EINVAL));
    return directory / name;
}

}  // namespace corvane
