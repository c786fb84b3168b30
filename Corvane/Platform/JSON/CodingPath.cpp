#include <algorithm>
#include <utility>

#include <Corvane/Platform/JSON/CodingPath.hpp>
#include <Corvane/Platform/JSON/Private/ClippedText.hpp>

namespace corvane {

namespace {

bool isPlain(std::string_view key) {
    constexpr std::size_t longest = 64;
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
    };
    return !key.empty() && key.size() <= longest && std::ranges::all_of(key, plain);
}

}  // namespace

std::string description(const CodingPath& path) {
    if (path.empty()) return "the top level";
    std::string text;
    for (const CodingKey& key : path) {
        if (key.index()) {
            text += '[' + key.stringValue() + ']';
        } else if (isPlain(key.stringValue())) {
            if (!text.empty()) text += '.';
            text += key.stringValue();
        } else {
            text += "[\"" + detail::clippedText(key.stringValue()) + "\"]";
        }
    }
    return text;
}

namespace detail {

CodingPath pathOf(const CodingStep* last) {
    CodingPath path;
    for (const CodingStep* step = last; step != nullptr; step = step->parent) {
        path.push_back(step->isIndex ? CodingKey(step->index) : CodingKey(std::string(step->key)));
    }
    std::ranges::reverse(path);
    return path;
}

std::string clippedText(std::string_view text) {
    constexpr std::size_t longest = 64;
    if (text.size() <= longest) return std::string(text);
    std::size_t end = longest;
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    while (end > 0 && continues(text[end]))
        --end;
    return std::string(text.substr(0, end)) + "…";
}

}  // namespace detail

}  // namespace corvane
