#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/Files/FileReadingOptions.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// Where the application keeps its files, and reading and writing whole files.
///
/// All operations may be called on any thread, and block it while the disk works. Their errors are of the domain
/// "POSIXErrorDomain", with the system's own numbers (`ENOENT`, `EACCES`, `ENOSPC`...).
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

    /// The path of the file `name` in `directory`, whether or not there is one. A name is one component: what could
    /// lead elsewhere (a separator, ".", "..", NUL, nothing at all) is `EINVAL`.
    [[nodiscard]] static std::expected<std::filesystem::path, PlatformError> file(
        const std::filesystem::path& directory, std::string_view name);

    /// Reads a whole file. What replaces the file in the meantime is not seen: the content is that of one file. A
    /// directory is `EISDIR`, and what else is no regular file (a device, a pipe) `EINVAL`.
    [[nodiscard]] static std::expected<Data, PlatformError> contents(const std::filesystem::path& file,
                                                                     FileReadingOptions options = {});

    /// Makes `data` the content of a file, new or not: whoever reads it, also after a crash or a power failure, finds
    /// either the whole old content or the whole new one, and after success the new one.
    ///
    /// The data goes to a file of its own in the same directory, which then takes the old one's place. The access
    /// permissions stay as they were; a new file gets what the process's umask leaves of reading and writing for
    /// everyone. A symbolic link is replaced itself. A failure leaves the old file and no other; only when the
    /// directory's own record of the exchange cannot be secured, the new content is there already.
    [[nodiscard]] static std::expected<void, PlatformError> writeAtomically(const std::filesystem::path& file,
                                                                            const Data& data);
};

}  // namespace corvane
