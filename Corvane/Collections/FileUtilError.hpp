#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace corvane {

/// Why `FileUtil` did not get as far as the file system.
class FileUtilError {
  public:
    /// There is no documents directory.
    [[nodiscard]] static constexpr FileUtilError invalidURL() noexcept { return {}; }

    [[nodiscard]] static constexpr bool isInvalidURL() noexcept { return true; }

    [[nodiscard]] static std::string description() { return "invalidURL"; }

    [[nodiscard]] constexpr bool operator==(const FileUtilError&) const noexcept = default;

  private:
    constexpr FileUtilError() noexcept = default;
};

}  // namespace corvane

template <>
struct std::hash<corvane::FileUtilError> {
    std::size_t operator()(corvane::FileUtilError /*error*/) const noexcept { return 0; }
};
