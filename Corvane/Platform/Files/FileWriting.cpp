#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Private/FileDescriptor.hpp>
#include <Corvane/Platform/Private/POSIXError.hpp>

namespace corvane {
namespace {

constexpr mode_t everyone = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr mode_t permissions = S_IRWXU | S_IRWXG | S_IRWXO;

/// A file under a name of its own, removed again unless it took another's place. The operations say whether they
/// succeeded, and leave the reason in `errno`.
class ReplacementFile {
  public:
    explicit ReplacementFile(int directory) noexcept : directory_(directory) {}

    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    ~ReplacementFile() {
        if (!file_.isOpen() || hasReplaced_) return;
        const int errnoBefore = errno;
        ::unlinkat(directory_, name_.c_str(), 0);
        errno = errnoBefore;
    }

    [[nodiscard]] bool create(mode_t mode) {
        do {
            std::uint64_t number = 0;
            if (::getrandom(&number, sizeof number, 0) != sizeof number) return false;
            name_ = fmt::format(".corvane-{:016x}", number);
            file_ = FileDescriptor(
                ::openat(directory_, name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
        } while (!file_.isOpen() && errno == EEXIST);
        return file_.isOpen();
    }

    [[nodiscard]] bool setPermissions(mode_t mode) const noexcept { return ::fchmod(file_.get(), mode) == 0; }

    [[nodiscard]] bool write(std::span<const std::byte> bytes) const noexcept {
        while (!bytes.empty()) {
            const ssize_t count = ::write(file_.get(), bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR) return false;
            if (count > 0) bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
        return ::fsync(file_.get()) == 0;
    }

    [[nodiscard]] bool replace(const std::string& other) noexcept {
        hasReplaced_ = ::renameat(directory_, name_.c_str(), directory_, other.c_str()) == 0;
        return hasReplaced_;
    }

  private:
    int directory_;
    FileDescriptor file_;
    std::string name_;
    bool hasReplaced_ = false;
};

/// Whether the directory's entries are on the disk now. Some file systems have no such operation, and need none.
bool secureEntries(int directory) noexcept {
    return ::fsync(directory) == 0 || errno == EINVAL || errno == ENOTSUP;
}

}  // namespace

std::expected<void, PlatformError> FileManager::writeAtomically(const std::filesystem::path& file, const Data& data) {
    if (file.native().find('\0') != std::string::npos) return std::unexpected(posixError(EINVAL));
    const std::string name = file.filename();
    const std::filesystem::path parent = file.has_parent_path() ? file.parent_path() : ".";
    // All further steps are taken in this directory, even if another one comes to stand under its path.
    const FileDescriptor directory(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.isOpen()) return std::unexpected(lastPOSIXError());

    struct stat status{};
    const bool exists =
        ::fstatat(directory.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode);
    ReplacementFile replacement(directory.get());
    // Nobody may look into the new file who may not look into the old one.
    const bool done = replacement.create(exists ? S_IRUSR | S_IWUSR : everyone) && replacement.write(data.bytes()) &&
                      (!exists || replacement.setPermissions(status.st_mode & permissions)) &&
                      replacement.replace(name) && secureEntries(directory.get());
    if (!done) return std::unexpected(lastPOSIXError());
    return {};
}

}  // namespace corvane
