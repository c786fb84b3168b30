#include <cerrno>
#include <fstream>

#include <gmock/gmock.h>

#include <Corvane/Collections/FileUtil.hpp>
#include <Corvane/Platform/Files/Bundle.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::StartsWith;

struct Team {
    int id;
};

class FileUtilTest : public ::testing::Test {
  protected:
    FileUtilTest() {
        for (const fs::path& directory : {documents_, resources_}) {
            fs::create_directories(directory / "directory");
            std::ofstream(directory / "team") << R"({"id": 12})";
            std::ofstream(directory / "list") << "[]";
        }
        FileManager::setDocumentsDirectory(documents_);
        Bundle::setResourcesDirectory(resources_);
    }

    void TearDown() override {
        FileManager::setDocumentsDirectory(std::nullopt);
        Bundle::setResourcesDirectory(std::nullopt);
    }

    testing::TemporaryDirectory directory_;
    fs::path documents_ = directory_.path() / "documents";
    fs::path resources_ = directory_.path() / "resources";
    testing::LogRecorder log_;
};

TEST_F(FileUtilTest, DecodesADocumentOrLogsOnceWhyNot) {
    EXPECT_EQ(FileUtil::resourceDecode<Team>("team").value().id, 12);
    EXPECT_EQ(FileUtil::fileManagerDecode<Team>("team").value().id, 12);

    struct {
        std::string name, fromBundle, fromDocuments;
    } const cases[] = {
        {"missing", "Failed to locate missing in bundle.", "Failed to load missing from FileManager. Error Domain="},
        {"../documents/team", "Failed to locate ../documents/team in bundle.",
         "Failed to load ../documents/team from FileManager. Error Domain="},
        {"directory", "Failed to load directory from bundle.", "Failed to load directory from FileManager. Error "},
        {"list", "Failed to decode list from bundle.", "Failed to decode list from FileManager. Expected "},
    };

    for (const auto& test : cases) {
        log_.clear();
        EXPECT_FALSE(FileUtil::resourceDecode<Team>(test.name));
        EXPECT_FALSE(FileUtil::fileManagerDecode<Team>(test.name));
        EXPECT_THAT(log_.messages("File Manager"), ElementsAre(test.fromBundle, StartsWith(test.fromDocuments)));
    }
}

TEST_F(FileUtilTest, WritesIntoTheDocumentsDirectoryOrSaysWhyNot) {
    const Data data(std::string_view("\0[]\n", 4));
    fs::remove_all(documents_);
    EXPECT_EQ(FileUtil::write(data, "../outside").error().as<PlatformError>()->code(), EINVAL);
    EXPECT_FALSE(fs::exists(documents_));
    EXPECT_TRUE(FileUtil::write(data, "new"));
    EXPECT_EQ(FileUtil::getFileManagerData("new"), data);

    FileManager::setDocumentsDirectory("");
    EXPECT_NE(FileUtil::write(data, "new").error().as<FileUtilError>(), nullptr);
    EXPECT_FALSE(FileUtil::getFileManagerData("new"));
    EXPECT_THAT(log_.messages(), ElementsAre("Failed to find url for new in FileManager."));
}

TEST_F(FileUtilTest, TakesResourcesFromBesideTheExecutable) {
    Bundle::setResourcesDirectory(std::nullopt);
    EXPECT_EQ(Bundle::resourcesDirectory(), fs::canonical("/proc/self/exe").parent_path() / "resources");
}

}  // namespace
}  // namespace corvane
