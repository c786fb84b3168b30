#include <algorithm>
#include <array>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>

namespace corvane::http {

namespace {

constexpr char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char upper(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

constexpr bool isTokenCharacter(char c) noexcept {
    return (c >= '0' && c <= '9') || (lower(c) >= 'a' && lower(c) <= 'z') ||
           std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

/// Names that are not just capitals after hyphens.
constexpr std::array<std::string_view, 9> irregularNames{
    "Content-MD5", "DNT", "ETag", "NEL", "SourceMap", "TE", "WWW-Authenticate", "X-UA-Compatible", "X-XSS-Protection",
};

}  // namespace

bool isToken(std::string_view text) noexcept {
    return !text.empty() && std::ranges::all_of(text, isTokenCharacter);
}

bool isFieldValue(std::string_view text) noexcept {
    return std::ranges::all_of(text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte == '\t' || (byte >= 0x20 && byte != 0x7f);
    });
}

bool equalNames(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string canonicalName(std::string_view name) {
    const auto irregular =
        std::ranges::find_if(irregularNames, [&](std::string_view known) { return equalNames(known, name); });
    if (irregular != irregularNames.end()) return std::string(*irregular);
    std::string result(name);
    bool startsWord = true;
    for (char& c : result) {
        c = startsWord ? upper(c) : lower(c);
        startsWord = c == '-';
    }
    return result;
}

}  // namespace corvane::http
