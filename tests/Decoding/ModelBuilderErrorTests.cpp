#include <libintl.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include <Corvane/Decoding/ModelBuilderError.hpp>
#include <Corvane/Platform/AnyError.hpp>

#include "tests/Support/TemporaryDirectory.hpp"

namespace corvane {

TEST(ModelBuilderError, SpeaksTheLanguageOfTheApplicationsCatalogueAndElseEnglish) {
    const AnyError empty = ModelBuilderError::emptyResult();
    const std::string english = "Data transforming has been finished but the final result is empty.";
    const std::string german = "Nichts gefunden.";

    // A compiled catalogue of one message: where its two texts are, their lengths and places, and the texts.
    const auto length = [](const std::string& text) { return static_cast<std::uint32_t>(text.size()); };
    const std::uint32_t head[] = {
        0x950412de, 0, 1, 28, 36, 0, 44, length(english), 44, length(german), 44 + length(english) + 1};
    const testing::TemporaryDirectory directory;
    std::filesystem::create_directories(directory.path() / "de/LC_MESSAGES");
    std::ofstream(directory.path() / "de/LC_MESSAGES/scores.mo")
        .write(reinterpret_cast<const char*>(head), sizeof head)
        .write(english.c_str(), length(english) + 1)
        .write(german.c_str(), length(german) + 1);

    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread is about.
    ASSERT_NE(std::setlocale(LC_MESSAGES, "C.UTF-8"), nullptr);
    ::setenv("LANGUAGE", "de", 1);
    EXPECT_EQ(empty.localizedDescription(), english);
    ::bindtextdomain("scores", directory.path().c_str());
    ::textdomain("scores");
    EXPECT_EQ(empty.localizedDescription(), german);
    ::textdomain("messages");
    ::unsetenv("LANGUAGE");
    std::setlocale(LC_MESSAGES, "C");
    // NOLINTEND(concurrency-mt-unsafe)
}

}  // namespace corvane
