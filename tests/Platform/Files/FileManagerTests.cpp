#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include <Corvane/Platform/Files/FileManager.hpp>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(FileManager, FindsTheDocumentsInTheAccountsHomeWhateverTheEnvironmentSays) {
    ::setenv("HOME", "/nowhere", 1);
    const ::passwd* account = ::getpwuid(::geteuid());
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(FileManager::documentsDirectory(), fs::path(account->pw_dir) / "Documents");
}

TEST(FileManager, TakesTheApplicationsChoiceOfDocumentsDirectory) {
    const auto own = FileManager::documentsDirectory();
    FileManager::setDocumentsDirectory("/var/lib/scores");
    EXPECT_EQ(FileManager::documentsDirectory(), "/var/lib/scores");
    FileManager::setDocumentsDirectory("scores");
    EXPECT_EQ(FileManager::documentsDirectory(), fs::current_path() / "scores");
    FileManager::setDocumentsDirectory("");
    EXPECT_EQ(FileManager::documentsDirectory(), std::nullopt);
    FileManager::setDocumentsDirectory(std::nullopt);
    EXPECT_EQ(FileManager::documentsDirectory(), own);
}

}  // namespace
}  // namespace corvane
