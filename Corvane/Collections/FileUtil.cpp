#include <filesystem>
#include <source_location>
#include <system_error>

#include <Corvane/Collections/FileUtil.hpp>
#include <Corvane/Core/Loggers.hpp>
#include <Corvane/Platform/Files/Bundle.hpp>
#include <Corvane/Platform/Files/FileManager.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>

namespace corvane {
namespace {

template <class Pattern, class... Arguments>
void logFailure(const Pattern& pattern, const Arguments&... arguments) noexcept {
    logFormatted(Loggers::fileManager(), LogLevel::error, std::source_location::current(), pattern, arguments...);
}

}  // namespace

std::optional<Data> FileUtil::resourceData(std::string_view name) {
    const auto file = Bundle::resource(name);
    if (!file) {
        logFailure(FMT_COMPILE("Failed to locate {} in bundle."), name);
        return std::nullopt;
    }
    auto content = FileManager::contents(*file);
    if (!content) {
        logFailure(FMT_COMPILE("Failed to load {} from bundle."), name);
        return std::nullopt;
    }
    return *std::move(content);
}

std::optional<Data> FileUtil::getFileManagerData(std::string_view name) {
    const auto directory = FileManager::documentsDirectory();
    if (!directory) {
        logFailure(FMT_COMPILE("Failed to find url for {} in FileManager."), name);
        return std::nullopt;
    }
    const auto file = FileManager::file(*directory, name);
    auto content = file ? FileManager::contents(*file, {.uncached = true}) : std::unexpected(file.error());
    if (!content) {
        logFailure(FMT_COMPILE("Failed to load {} from FileManager. {}"), name, content.error().description());
        return std::nullopt;
    }
    return *std::move(content);
}

std::expected<void, AnyError> FileUtil::write(const Data& data, std::string_view name) {
    const auto directory = FileManager::documentsDirectory();
    if (!directory) return std::unexpected(FileUtilError::invalidURL());
    const auto file = FileManager::file(*directory, name);
    if (!file) return std::unexpected(file.error());
    std::error_code ignored;  // Without the directory the write itself fails, and says why.
    std::filesystem::create_directories(*directory, ignored);
    if (const auto written = FileManager::writeAtomically(*file, data); !written) {
        return std::unexpected(written.error());
    }
    return {};
}

void FileUtil::logUndecodableResource(std::string_view name) noexcept {
    logFailure(FMT_COMPILE("Failed to decode {} from bundle."), name);
}

void FileUtil::logUndecodableDocument(std::string_view name, const DecodingError& error) noexcept {
    logFailure(FMT_COMPILE("Failed to decode {} from FileManager. {}"), name, error.description());
}

}  // namespace corvane
