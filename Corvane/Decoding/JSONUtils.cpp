#include <Corvane/Decoding/JSONUtils.hpp>

namespace corvane {
namespace {

/// What `read` makes of the number under `name`, absent when there is no number.
template <class Result>
std::optional<Result> number(const JSONDictionary& json, std::string_view name,
                             Result (JSONNumber::*read)() const noexcept) {
    const auto number = json[name].asNumber();
    if (!number) return std::nullopt;
    return ((*number).*read)();
}

std::string integerOrNumberText(const JSONNumber& number) {
    if (const auto integer = number.exactInt64()) return std::to_string(*integer);
    if (const auto integer = number.exactUInt64()) return std::to_string(*integer);
    return number.description();
}

}  // namespace

std::optional<std::string> JSONUtils::getStringFromJSON(const JSONDictionary& json, std::string_view name) {
    const auto text = json[name].asString();
    if (!text) return std::nullopt;
    return std::string(*text);
}

std::string JSONUtils::getStringFromJSON(const JSONDictionary& json, std::string_view name,
                                         std::string_view defaultVal) {
    return std::string(json[name].asString().value_or(defaultVal));
}

std::optional<std::string> JSONUtils::getForceStringFromJSON(const JSONDictionary& json, std::string_view name) {
    if (const auto number = json[name].asNumber()) return integerOrNumberText(*number);
    return getStringFromJSON(json, name);
}

std::optional<std::int64_t> JSONUtils::getIntFromJSON(const JSONDictionary& json, std::string_view name) {
    return number(json, name, &JSONNumber::int64Value);
}

std::int64_t JSONUtils::getIntFromJSON(const JSONDictionary& json, std::string_view name, std::int64_t defaultVal) {
    return getIntFromJSON(json, name).value_or(defaultVal);
}

std::int64_t JSONUtils::getNumberFromJSON(const JSONDictionary& json, std::string_view name, std::int64_t defaultVal) {
    return getIntFromJSON(json, name, defaultVal);
}

std::optional<std::int64_t> JSONUtils::getInt64FromJSON(const JSONDictionary& json, std::string_view name) {
    return getIntFromJSON(json, name);
}

std::optional<float> JSONUtils::getFloatFromJSON(const JSONDictionary& json, std::string_view name) {
    return number(json, name, &JSONNumber::floatValue);
}

float JSONUtils::getFloatFromJSON(const JSONDictionary& json, std::string_view name, float defaultVal) {
    return getFloatFromJSON(json, name).value_or(defaultVal);
}

std::optional<double> JSONUtils::getDoubleFromJSON(const JSONDictionary& json, std::string_view name) {
    return number(json, name, &JSONNumber::doubleValue);
}

double JSONUtils::getDoubleFromJSON(const JSONDictionary& json, std::string_view name, double defaultVal) {
    return getDoubleFromJSON(json, name).value_or(defaultVal);
}

bool JSONUtils::getBoolFromJSON(const JSONDictionary& json, std::string_view name) {
    const JSONValue& value = json[name];
    if (const auto number = value.asNumber()) return number->boolValue();
    return value.asString() == "true";
}

std::optional<JSONArray> JSONUtils::getArrayFromJSON(const JSONDictionary& json, std::string_view name) {
    const JSONArray* array = json[name].asArray();
    if (array == nullptr) return std::nullopt;
    return *array;
}

std::optional<std::vector<std::string>> JSONUtils::getStringArrayFromJSON(const JSONDictionary& json,
                                                                          std::string_view name) {
    const JSONArray* array = json[name].asArray();
    if (array == nullptr) return std::nullopt;
    std::vector<std::string> texts;
    for (const JSONValue& element : *array) {
        if (const auto text = element.asString()) texts.emplace_back(*text);
    }
    return texts;
}

}  // namespace corvane
