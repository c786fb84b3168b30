#pragma once

#include <expected>
#include <optional>
#include <string_view>
#include <utility>

#include <Corvane/Collections/FileUtilError.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>

namespace corvane {

/// Loads small JSON documents that the application is shipped with (see `Bundle`) or keeps in its documents directory
/// (see `FileManager`), and writes the latter.
///
///     const auto teams = FileUtil::resourceDecode<std::vector<Team>>("teams.json");
///
/// A document that cannot be had is absent, and the reason is logged, category "File Manager". A file name is one
/// component, with its extension; any other name is one that cannot be located, read or written.
///
/// All operations may be called on any thread, and block it while the disk works.
class CORVANE_EXPORT FileUtil {
  public:
    FileUtil() = delete;

    /// The bundled document `name`, decoded.
    template <Decodable T>
    [[nodiscard]] static std::optional<T> resourceDecode(std::string_view name) {
        return decode<T>(resourceData(name), [name](const auto& /*error*/) { logUndecodableResource(name); });
    }

    /// The document `name` of the documents directory, decoded.
    template <Decodable T>
    [[nodiscard]] static std::optional<T> fileManagerDecode(std::string_view name) {
        return decode<T>(getFileManagerData(name), [name](const auto& error) { logUndecodableDocument(name, error); });
    }

    /// The bytes of the file `name` of the documents directory. Leaves it out of the system's file cache.
    [[nodiscard]] static std::optional<Data> getFileManagerData(std::string_view name);

    /// Writes the file `name` of the documents directory by `FileManager::writeAtomically`; makes the directory when
    /// that is missing. Fails with `FileUtilError` when there is no documents directory, and otherwise with the
    /// `PlatformError` of the failed operation. Logs nothing.
    [[nodiscard]] static std::expected<void, AnyError> write(const Data& data, std::string_view name);

  private:
    template <class T>
    static std::optional<T> decode(const std::optional<Data>& data, auto onFailure) {
        if (!data) return std::nullopt;
        auto value = JSONDecoder().decode<T>(*data);
        if (value) return *std::move(value);
        onFailure(value.error());
        return std::nullopt;
    }

    static std::optional<Data> resourceData(std::string_view name);
    static void logUndecodableResource(std::string_view name) noexcept;
    static void logUndecodableDocument(std::string_view name, const DecodingError& error) noexcept;
};

}  // namespace corvane
