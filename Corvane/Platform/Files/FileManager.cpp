#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {
namespace {

struct Choice {
    UnfairLock lock;
    std::optional<std::filesystem::path> documents;
};

/// Never destroyed: other threads may outlive static destruction.
Choice& choice() {
    static auto& instance = *new Choice;
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
    std::optional<std::filesystem::path> directory;
    {
        const std::lock_guard guard(choice().lock);
        directory = choice().documents;
    }
    if (!directory && !homeDirectory().empty()) directory = homeDirectory() / "Documents";
    if (directory && directory->empty()) directory.reset();
    return directory;
}

void FileManager::setDocumentsDirectory(std::optional<std::filesystem::path> directory) {
    if (directory && directory->is_relative() && !directory->empty()) {
        std::error_code ignored;  // Without a current directory a relative path leads nowhere, completed or not.
        auto completed = std::filesystem::absolute(*directory, ignored);
        if (!ignored) directory = std::move(completed);
    }
    const std::lock_guard guard(choice().lock);
    choice().documents.swap(directory);
}

}  // namespace corvane
