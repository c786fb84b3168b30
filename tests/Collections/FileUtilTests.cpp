#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Collections/FileUtil.hpp>
#include <Corvane/Platform/Files/Bundle.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

struct Team {
    int id;
    std::string name;
};

class FileUtilTest : public ::testing::Test {
  protected:
    FileUtilTest() {
        for (const fs::path& directory : {documents_, resources_}) {
            fs::create_directory(directory);
            fs::create_directory(directory / "directory.json");
            std::ofstream(directory / "team.json") << R"({"id": 12, "name": "Rovers"})";
            std::ofstream(directory / "list.json") << "[]";
        }
        FileManager::setDocumentsDirectory(documents_);
        Bundle::setResourcesDirectory(resources_);
    }

    ~FileUtilTest() override {
        FileManager::setDocumentsDirectory(std::nullopt);
        Bundle::setResourcesDirectory(std::nullopt);
    }

    /// What was logged since the last call.
    std::vector<std::string> logged() {
        auto messages = log_.messages("File Manager");
        log_.clear();
        return messages;
    }

    testing::TemporaryDirectory directory_;
    fs::path documents_ = directory_.path() / "documents";
    fs::path resources_ = directory_.path() / "resources";
    testing::LogRecorder log_;
};

TEST_F(FileUtilTest, DecodesADocumentOrLogsOnceWhyNot) {
    EXPECT_EQ(FileUtil::resourceDecode<Team>("team.json").value().name, "Rovers");
    EXPECT_EQ(FileUtil::fileManagerDecode<Team>("team.json").value().id, 12);
    EXPECT_THAT(logged(), IsEmpty());

    struct {
        std::string name, fromBundle, fromDocuments;
    } const cases[] = {
        {"missing.json", "Failed to locate missing.json in bundle.",
         "Failed to load missing.json from FileManager. .*No such file or directory.*"},
        {"../documents/team.json", "Failed to locate ../documents/team.json in bundle.",
         "Failed to load ../documents/team.json from FileManager. .*Invalid argument.*"},
        {"directory.json", "Failed to load directory.json from bundle.",
         "Failed to load directory.json from FileManager. .*Is a directory.*"},
        {"list.json", "Failed to decode list.json from bundle.",
         "Failed to decode list.json from FileManager. Expected .+"},
    };

    for (const auto& test : cases) {
        EXPECT_FALSE(FileUtil::resourceDecode<Team>(test.name));
        EXPECT_THAT(logged(), ElementsAre(test.fromBundle));
        EXPECT_FALSE(FileUtil::fileManagerDecode<Team>(test.name));
        EXPECT_THAT(logged(), ElementsAre(MatchesRegex(test.fromDocuments)));
    }
    EXPECT_EQ(fs::file_size(documents_ / "list.json"), 2);
}

TEST_F(FileUtilTest, WritesWhatItReadsBackEvenIntoADirectoryThatIsMissing) {
    const Data data(std::string_view("\0[]\n", 4));
    fs::remove_all(documents_);
    EXPECT_TRUE(FileUtil::write(data, "new.json"));
    EXPECT_EQ(FileUtil::getFileManagerData("new.json"), data);
}

TEST_F(FileUtilTest, PassesOnWhyItCannotWriteAndLogsNothing) {
    fs::remove_all(documents_);
    const auto outside = FileUtil::write(Data("x"), "../outside");
    EXPECT_EQ(outside.error().as<PlatformError>()->code(), EINVAL);
    EXPECT_FALSE(fs::exists(documents_));
    std::ofstream(documents_) << "a file where the directory should be";
    EXPECT_EQ(FileUtil::write(Data("x"), "new.json").error().as<PlatformError>()->code(), ENOTDIR);

    FileManager::setDocumentsDirectory("");
    const auto nowhere = FileUtil::write(Data("x"), "new.json");
    ASSERT_NE(nowhere.error().as<FileUtilError>(), nullptr);
    EXPECT_EQ(*nowhere.error().as<FileUtilError>(), FileUtilError::invalidURL());
    EXPECT_THAT(logged(), IsEmpty());
    EXPECT_FALSE(FileUtil::fileManagerDecode<Team>("team.json"));
    EXPECT_THAT(logged(), ElementsAre("Failed to find url for team.json in FileManager."));
}

}  // namespace
}  // namespace corvane
