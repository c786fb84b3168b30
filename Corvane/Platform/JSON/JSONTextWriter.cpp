#include <algorithm>
#include <array>
#include <iterator>
#include <memory>

#include <fmt/format.h>

#include <Corvane/Platform/JSON/Private/JSONTextWriter.hpp>

namespace corvane::detail {

namespace {

/// Whether a character must be escaped, by its value.
constexpr auto mustBeEscaped = [] {
    std::array<bool, 256> table{};
    for (std::size_t control = 0; control < 0x20; ++control)
        table[control] = true;
    table['"'] = table['\\'] = true;
    return table;
}();

bool needsEscape(char character) noexcept {
    return mustBeEscaped[static_cast<unsigned char>(character)];
}

}  // namespace

void JSONTextWriter::writeText(std::string_view text) {
    text_ += '"';
    while (true) {
        const auto plain = static_cast<std::size_t>(std::ranges::find_if(text, needsEscape) - text.begin());
        text_ += text.substr(0, plain);
        if (plain == text.size()) break;
        switch (const char special = text[plain]) {
            case '"':
            case '\\':
                (text_ += '\\') += special;
                break;
            case '\b':
                text_ += "\\b";
                break;
            case '\f':
                text_ += "\\f";
                break;
            case '\n':
                text_ += "\\n";
                break;
            case '\r':
                text_ += "\\r";
                break;
            case '\t':
                text_ += "\\t";
                break;
            default:
                fmt::format_to(std::back_inserter(text_), "\\u{:04x}", special);
        }
        text.remove_prefix(plain + 1);
    }
    text_ += '"';
}

Data JSONTextWriter::data() && {
    const std::size_t size = text_.size();
    text_.append(Data::padding, '\0');
    const auto owner = std::make_shared<const std::string>(std::move(text_));
    const auto* const bytes = reinterpret_cast<const std::byte*>(owner->data());
    return Data::adopting(std::shared_ptr<const std::byte[]>(owner, bytes), size);
}

}  // namespace corvane::detail
