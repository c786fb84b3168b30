#include <filesystem>
#include <fstream>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Files/Bundle.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

TEST(Bundle, KeepsItsResourcesBesideTheExecutable) {
    EXPECT_EQ(Bundle::resourcesDirectory(), fs::canonical("/proc/self/exe").parent_path() / "resources");
}

TEST(Bundle, FindsResourcesInTheChosenDirectoryAndNowhereElse) {
    const testing::TemporaryDirectory directory;
    const fs::path resources = directory.path() / "resources";
    fs::create_directory(resources);
    std::ofstream(resources / "teams.json") << "{}";
    std::ofstream(directory.path() / "secret") << "{}";
    Bundle::setResourcesDirectory(resources);
    EXPECT_EQ(Bundle::resource("teams.json"), resources / "teams.json");
    for (const auto name : {"teams"sv, ""sv, "."sv, ".."sv, "../secret"sv, "/etc/passwd"sv, "teams.json\0x"sv})
        EXPECT_EQ(Bundle::resource(name), std::nullopt) << name;
    Bundle::setResourcesDirectory(std::nullopt);
}

}  // namespace
}  // namespace corvane
