#pragma once

#include <string>
#include <string_view>

/// The cases from which the errors of the download road are put together, each with its name.
namespace corvane::failureCases {

struct InvalidResponse {
    static constexpr std::string_view name = "invalidResponse";
    /// What was wrong with the response, for developers.
    std::string description;
    friend bool operator==(const InvalidResponse&, const InvalidResponse&) = default;
};

struct InvalidUrl {
    static constexpr std::string_view name = "invalidUrl";
    friend bool operator==(InvalidUrl, InvalidUrl) = default;
};

struct InvalidJson {
    static constexpr std::string_view name = "invalidJson";
    friend bool operator==(InvalidJson, InvalidJson) = default;
};

struct DecryptionError {
    static constexpr std::string_view name = "decryptionError";
    friend bool operator==(DecryptionError, DecryptionError) = default;
};

struct ParsingError {
    static constexpr std::string_view name = "parsingError";
    friend bool operator==(ParsingError, ParsingError) = default;
};

struct Cancelled {
    static constexpr std::string_view name = "cancelled";
    friend bool operator==(Cancelled, Cancelled) = default;
};

struct Timeout {
    static constexpr std::string_view name = "timeout";
    friend bool operator==(Timeout, Timeout) = default;
};

struct Undefined {
    static constexpr std::string_view name = "undefined";
    friend bool operator==(Undefined, Undefined) = default;
};

struct EmptyData {
    static constexpr std::string_view name = "emptyData";
    friend bool operator==(EmptyData, EmptyData) = default;
};

}  // namespace corvane::failureCases
