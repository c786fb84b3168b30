#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include <Corvane/Platform/Dates/Private/ZoneRules.hpp>

namespace corvane {

/// Where the system's time-zone database lies.
inline constexpr const char* zoneDirectory = "/usr/share/zoneinfo/";

/// Reads what a file of the time-zone database says (RFC 8536, versions 1 to 4). Absent when it is damaged, and when it
/// counts leap seconds, which instants here do not.
[[nodiscard]] std::optional<ZoneRules> readZone(std::span<const std::byte> bytes);

/// The same for the file at `path`, which must be a regular file of at most a megabyte.
[[nodiscard]] std::optional<ZoneRules> loadZone(const std::string& path);

}  // namespace corvane
