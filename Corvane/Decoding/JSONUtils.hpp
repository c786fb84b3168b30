#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

/// Reads members of loosely typed dictionaries as what the caller needs.
///
///     const auto minute = JSONUtils::getIntFromJSON(match, "minute", 0);
///
/// Nothing fails: a member that is missing, null or of another kind is absent, the default, or false. Numbers and text
/// are never made from each other but by `getForceStringFromJSON` and, for "true", `getBoolFromJSON`. Booleans are
/// numbers, 1 and 0. Any thread.
class CORVANE_EXPORT JSONUtils {
  public:
    JSONUtils() = delete;

    [[nodiscard]] static std::optional<std::string> getStringFromJSON(const JSONDictionary& json,
                                                                      std::string_view name);
    [[nodiscard]] static std::string getStringFromJSON(const JSONDictionary& json, std::string_view name,
                                                       std::string_view defaultVal);

    /// Text, or the text of a number: "5" for 5 and for 5.0, "1.5" for 1.5, "1" for true, otherwise as `numberText` has
    /// it.
    [[nodiscard]] static std::optional<std::string> getForceStringFromJSON(const JSONDictionary& json,
                                                                           std::string_view name);

    /// A number without its fraction: 12 for 12.9. One out of range gives the nearest end of the range.
    [[nodiscard]] static std::optional<std::int64_t> getIntFromJSON(const JSONDictionary& json, std::string_view name);
    [[nodiscard]] static std::int64_t getIntFromJSON(const JSONDictionary& json, std::string_view name,
                                                     std::int64_t defaultVal);

    /// The same as `getIntFromJSON`, for callers that know it by these names.
    [[nodiscard]] static std::int64_t getNumberFromJSON(const JSONDictionary& json, std::string_view name,
                                                        std::int64_t defaultVal);
    [[nodiscard]] static std::optional<std::int64_t> getInt64FromJSON(const JSONDictionary& json,
                                                                      std::string_view name);

    /// The nearest float; infinite beyond its range.
    [[nodiscard]] static std::optional<float> getFloatFromJSON(const JSONDictionary& json, std::string_view name);
    [[nodiscard]] static float getFloatFromJSON(const JSONDictionary& json, std::string_view name, float defaultVal);

    [[nodiscard]] static std::optional<double> getDoubleFromJSON(const JSONDictionary& json, std::string_view name);
    [[nodiscard]] static double getDoubleFromJSON(const JSONDictionary& json, std::string_view name, double defaultVal);

    /// Whether the member is a number other than zero, or exactly the text "true".
    [[nodiscard]] static bool getBoolFromJSON(const JSONDictionary& json, std::string_view name);

    [[nodiscard]] static std::optional<JSONArray> getArrayFromJSON(const JSONDictionary& json, std::string_view name);

    /// The texts of an array in their order; its other elements are left out.
    [[nodiscard]] static std::optional<std::vector<std::string>> getStringArrayFromJSON(const JSONDictionary& json,
                                                                                        std::string_view name);
};

}  // namespace corvane
