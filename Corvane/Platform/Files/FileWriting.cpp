#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include <fmt/format.h>

#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Private/FileDescriptor.hpp>
#include <Corvane/Platform/Private/POSIXError.hpp>

namespace corvane {
namespace {

constexpr mode_t everyone = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr mode_t permissions = S_IRWXU | S_IRWXG | S_IRWXO;

/// The error number of a system call that returned `result`, 0 when it succeeded.
int failureOf(int result) noexcept {
    return result < 0 ? errno : 0;
}

/// A file under a name of its own, removed again unless it took another's place. Operations give an error number.
class ReplacementFile {
  public:
    explicit ReplacementFile(int directory) noexcept : directory_(directory) {}

    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    ~ReplacementFile() {
        if (file_.isOpen() && !hasReplaced_) ::unlinkat(directory_, name_.c_str(), 0);
    }

    [[nodiscard]] int create(mode_t mode) {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
        for (;;) {
            std::uint64_t number = 0;
            if (::getrandom(&number, sizeof number, 0) < 0) return errno;
            name_ = fmt::format(".corvane-{:016x}", number);
            const int opened = ::openat(directory_, name_.c_str(), flags, mode);
            if (opened >= 0) {
                file_ = FileDescriptor(opened);
                return 0;
            }
            if (errno != EEXIST) return errno;
        }
    }

    [[nodiscard]] int setPermissions(mode_t mode) const noexcept { return failureOf(::fchmod(file_.get(), mode)); }

    [[nodiscard]] int write(std::span<const std::byte> bytes) const noexcept {
        while (!bytes.empty()) {
            const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR) return errno;
            if (count > 0) bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return failureOf(::fsync(file_.get()));
    }

    [[nodiscard]] int replace(const std::string& other) noexcept {
        const int failure = failureOf(::renameat(directory_, name_.c_str(), directory_, other.c_str()));
        hasReplaced_ = failure == 0;
        return failure;
    }

  private:
    int directory_;
    FileDescriptor file_;
    std::string name_;
    bool hasReplaced_ = false;
};

/// Brings the directory's entries to the disk. Some file systems have no such operation, and need none.
int secureEntries(int directory) noexcept {
    const int failure = failureOf(::fsync(directory));
    return failure == EINVAL || failure == ENOTSUP ? 0 : failure;
}

/// The steps of `FileManager::writeAtomically` in an open directory; an error number.
int replaceFile(int directory, const std::string& name, std::span<const std::byte> content) {
    struct stat status{};
    const bool exists =
        ::fstatat(directory, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode);
    ReplacementFile replacement(directory);
    // Nobody may look into the new file who may not look into the old one.
    if (const int failure = replacement.create(exists ? S_IRUSR | S_IWUSR : everyone)) return failure;
    if (exists) {
        if (const int failure = replacement.setPermissions(status.st_mode & permissions)) return failure;
    }
    if (const int failure = replacement.write(content)) return failure;
    if (const int failure = replacement.replace(name)) return failure;
    return secureEntries(directory);
}

}  // namespace

std::expected<void, PlatformError> FileManager::writeAtomically(const std::filesystem::path& file, const Data& data) {
    if (file.native().find('\0') != std::string::npos) return std::unexpected(posixError(EINVAL));
    const std::filesystem::path parent = file.has_parent_path() ? file.parent_path() : ".";
    // All further steps are taken in this directory, even if another one comes to stand under its path.
    const FileDescriptor directory(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen()) return std::unexpected(lastPOSIXError());
    if (const int failure = replaceFile(directory.get(), file.filename(), data.bytes())) {
        return std::unexpected(posixError(failure));
    }
    return {};
}

}  // namespace corvane
