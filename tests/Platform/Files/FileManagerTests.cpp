#include <pwd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <expected>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <Corvane/Platform/Files/FileManager.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::TemporaryDirectory;

/// The system's number for why it failed, 0 for success.
template <class T>
std::int64_t code(const std::expected<T, PlatformError>& result) {
    return result ? 0 : result.error().code();
}

std::expected<void, PlatformError> write(const fs::path& file, std::string_view text) {
    return FileManager::writeAtomically(file, Data(text));
}

std::string read(const fs::path& file) {
    const auto content = FileManager::contents(file);
    return content ? std::string(content->text()) : content.error().description();
}

TEST(FileManager, FindsTheDocumentsInTheAccountsHomeUnlessTheApplicationChooses) {
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread is about.
    ::setenv("HOME", "/nowhere", 1);
    const auto own = fs::path(::getpwuid(::geteuid())->pw_dir) / "Documents";
    // NOLINTEND(concurrency-mt-unsafe)
    EXPECT_EQ(FileManager::documentsDirectory(), own);
    FileManager::setDocumentsDirectory("scores");
    EXPECT_EQ(FileManager::documentsDirectory(), fs::current_path() / "scores");
    FileManager::setDocumentsDirectory("");
    EXPECT_EQ(FileManager::documentsDirectory(), std::nullopt);
    FileManager::setDocumentsDirectory(std::nullopt);
    EXPECT_EQ(FileManager::documentsDirectory(), own);
}

TEST(FileManager, TakesANameForOneComponent) {
    EXPECT_EQ(FileManager::file("/documents", "..notes \\ é.json"), "/documents/..notes \\ é.json");
    for (const std::string& name : {""s, "."s, ".."s, "/"s, "a/b"s, "../a"s, "/etc/passwd"s, "a/"s, "a\0b"s})
        EXPECT_EQ(code(FileManager::file("/documents", name)), EINVAL) << name;
}

TEST(FileManager, ReadsBackWhatItWrote) {
    const TemporaryDirectory directory;
    const fs::path file = directory.path() / std::string(255, 'n');
    for (const std::size_t size : {0UZ, 1UZ, 64UZ, 65UZ, 5'000'000UZ}) {
        const std::string text(size, 'x');
        ASSERT_EQ(code(write(file, text)), 0);
        EXPECT_EQ(FileManager::contents(file)->text(), text);
        EXPECT_EQ(FileManager::contents(file, {.uncached = true})->text(), text);
    }
    EXPECT_EQ(directory.names().size(), 1);
    // A file that says it is empty and is not.
    EXPECT_GT(FileManager::contents("/proc/self/maps")->size(), Data::padding);
}

TEST(FileManager, SaysWhyItCannotRead) {
    const TemporaryDirectory directory;
    const fs::path pipe = directory.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(code(FileManager::contents(directory.path() / "missing")), ENOENT);
    EXPECT_EQ(code(FileManager::contents(directory.path())), EISDIR);
    EXPECT_EQ(code(FileManager::contents(pipe)), EINVAL);
    EXPECT_EQ(code(FileManager::contents("/dev/null")), EINVAL);
    EXPECT_EQ(code(FileManager::contents(std::string("/etc/passwd\0", 12))), EINVAL);
}

TEST(FileManager, KeepsPermissionsLeavesNewOnesToTheUmaskAndReplacesLinks) {
    const TemporaryDirectory directory;
    const fs::path file = directory.path() / "file";
    const fs::path link = directory.path() / "link";
    fs::create_symlink(file, link);
    const ::mode_t before = ::umask(027);
    EXPECT_EQ(code(write(file, "new")), 0);
    EXPECT_EQ(static_cast<unsigned>(fs::status(file).permissions()), 0640);
    for (const unsigned mode : {0600U, 0666U, 0444U}) {
        fs::permissions(file, static_cast<fs::perms>(mode));
        EXPECT_EQ(code(write(file, "again")), 0);
        EXPECT_EQ(static_cast<unsigned>(fs::status(file).permissions()), mode);
    }
    ::umask(before);
    EXPECT_EQ(code(write(link, "own")), 0);
    EXPECT_EQ(read(file), "again");
    EXPECT_EQ(read(link), "own");
}

TEST(FileManager, LeavesTheOldFileAndNoOtherWhenWritingFails) {
    const TemporaryDirectory directory;
    const fs::path file = directory.path() / "file";
    ASSERT_EQ(code(write(file, "old")), 0);
    fs::create_directory(directory.path() / "directory");
    EXPECT_EQ(code(write(directory.path() / "directory", "new")), EISDIR);
    EXPECT_EQ(code(write(file / "file", "new")), ENOTDIR);

    // A file system that takes the beginning and no more.
    ::rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const ::rlimit little{.rlim_cur = 4096, .rlim_max = before.rlim_max};
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &little);
    EXPECT_EQ(code(write(file, std::string(10'000, 'x'))), EFBIG);
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, formerHandler);

    // A directory that may be read and not written. Root may do everything, so he becomes nobody.
    constexpr ::uid_t nobody = 65534;
    const ::uid_t self = ::geteuid();
    ASSERT_EQ(::chmod(directory.path().c_str(), 0555), 0);
    ASSERT_EQ(::seteuid(self == 0 ? nobody : self), 0);
    EXPECT_EQ(code(write(file, "new")), EACCES);
    ASSERT_EQ(::seteuid(self), 0);
    ASSERT_EQ(::chmod(directory.path().c_str(), 0755), 0);

    EXPECT_EQ(read(file), "old");
    EXPECT_EQ(directory.names().size(), 2);
}

TEST(FileManager, ReadsOneFileWholeWhileItIsReplaced) {
    const TemporaryDirectory directory;
    const fs::path file = directory.path() / "file";
    const std::string texts[] = {std::string(100'000, 'a'), std::string(300'000, 'b')};
    ASSERT_EQ(code(write(file, texts[0])), 0);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (int i = 0; i < 40; ++i)
            EXPECT_EQ(code(write(file, texts[i % 2])), 0);
        done = true;
    });
    while (!done) {
        const std::string text = read(file);
        EXPECT_TRUE(text == texts[0] || text == texts[1]) << text.size();
    }
    writer.join();
}

}  // namespace
}  // namespace corvane
