#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Private/FileDescriptor.hpp>
#include <Corvane/Platform/Private/POSIXError.hpp>

namespace corvane {
namespace {

/// Reads to the end of the file; `expectedSize` is what it is supposed to hold. May throw std::bad_alloc.
std::expected<Data, PlatformError> readToEnd(int file, std::size_t expectedSize) {
    std::size_t capacity = expectedSize;
    auto buffer = std::make_shared_for_overwrite<std::byte[]>(capacity + Data::padding);
    std::size_t size = 0;
    for (;;) {
        // The padding serves to notice the end and a file that has grown.
        const ssize_t count = ::read(file, buffer.get() + size, capacity + Data::padding - size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::unexpected(lastPOSIXError());
        size += static_cast<std::size_t>(count);
        if (count == 0) return Data::adopting(std::move(buffer), size);
        if (size <= capacity) continue;
        capacity = size * 2;
        auto larger = std::make_shared_for_overwrite<std::byte[]>(capacity + Data::padding);
        std::copy_n(buffer.get(), size, larger.get());
        buffer = std::move(larger);
    }
}

}  // namespace

std::expected<Data, PlatformError> FileManager::contents(const std::filesystem::path& file,
                                                         FileReadingOptions options) {
    if (file.native().find('\0') != std::string::npos) return std::unexpected(posixError(EINVAL));
    // Without blocking, so that a pipe which nobody writes to is found to be one.
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status{};
    if (!opened.isOpen() || ::fstat(opened.get(), &status) != 0) return std::unexpected(lastPOSIXError());
    if (S_ISDIR(status.st_mode)) return std::unexpected(posixError(EISDIR));
    if (!S_ISREG(status.st_mode)) return std::unexpected(posixError(EINVAL));
    try {
        auto content = readToEnd(opened.get(), static_cast<std::size_t>(status.st_size));
        if (options.uncached) ::posix_fadvise(opened.get(), 0, 0, POSIX_FADV_DONTNEED);
        return content;
    } catch (const std::bad_alloc&) {
        return std::unexpected(posixError(ENOMEM));
    }
}

}  // namespace corvane
