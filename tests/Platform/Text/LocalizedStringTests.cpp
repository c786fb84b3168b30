#include <libintl.h>

#include <clocale>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Text/LocalizedString.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {
namespace {

/// A compiled message catalogue with one translation: seven numbers, the place of the text, that of its translation,
/// and both with a terminator.
std::string catalogue(std::string_view text, std::string_view translation) {
    constexpr std::uint32_t heading = 7 * 4, place = 2 * 4, start = heading + 2 * place;
    const auto length = [](std::string_view words) { return static_cast<std::uint32_t>(words.size()); };
    const std::uint32_t numbers[] = {0x950412de,
                                     0,
                                     1,
                                     heading,
                                     heading + place,
                                     0,
                                     start,
                                     length(text),
                                     start,
                                     length(translation),
                                     start + length(text) + 1};
    std::string file(sizeof numbers, '\0');
    std::memcpy(file.data(), numbers, sizeof numbers);
    return file.append(text).append(1, '\0').append(translation).append(1, '\0');
}

TEST(LocalizedString, LooksInTheApplicationsCatalogueAndFallsBackToEnglish) {
    const testing::TemporaryDirectory directory;
    const auto messages = directory.path() / "de" / "LC_MESSAGES";
    std::filesystem::create_directories(messages);
    std::ofstream(messages / "scores.mo", std::ios::binary) << catalogue("Full time", "Abpfiff");

    ASSERT_NE(std::setlocale(LC_MESSAGES, "C.UTF-8"), nullptr);
    ::setenv("LANGUAGE", "de", 1);
    EXPECT_EQ(localizedString("Full time"), "Full time");
    ::bindtextdomain("scores", directory.path().c_str());
    ::textdomain("scores");
    EXPECT_EQ(localizedString("Full time"), "Abpfiff");
    EXPECT_EQ(localizedString("Half time"), "Half time");
    EXPECT_EQ(localizedString(""), "");

    ::textdomain("messages");
    ::unsetenv("LANGUAGE");
    std::setlocale(LC_MESSAGES, "C");
}

}  // namespace
}  // namespace corvane
