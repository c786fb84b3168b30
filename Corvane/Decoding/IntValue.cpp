#include <charconv>
#include <system_error>

#include <Corvane/Decoding/IntValue.hpp>

namespace corvane {

std::optional<std::int64_t> intValue(std::string_view text) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return value;
}

}  // namespace corvane
