#include "Terminal.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cwchar>

namespace matchday {
namespace {

/// The C library's character tables, whatever locale the user runs in: the texts are UTF-8 in any case.
class UTF8Locale {
  public:
    UTF8Locale() : before_(uselocale(tables())) {}

    ~UTF8Locale() { uselocale(before_); }

    UTF8Locale(const UTF8Locale&) = delete;
    UTF8Locale& operator=(const UTF8Locale&) = delete;

  private:
    static locale_t tables() {
        static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t before_;
};

/// Calls `visit(character, bytes)` for every character; bytes that are no UTF-8 come one by one as U+FFFD.
template <class Visit>
void forEachCharacter(std::string_view text, const Visit& visit) {
    const UTF8Locale locale;
    std::mbstate_t state{};
    while (!text.empty()) {
        wchar_t character = 0;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the state is our own.
        std::size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
        if (length == 0) length = 1;
        if (length > text.size()) {
            character = 0xFFFD;
            length = 1;
            state = {};
        }
        if (!visit(character, text.substr(0, length))) return;
        text.remove_prefix(length);
    }
}

std::size_t width(wchar_t character) {
    return static_cast<std::size_t>(std::max(0, wcwidth(character)));
}

/// Characters that move the cursor, start escape sequences, or turn the writing direction around.
bool isObeyed(wchar_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
           (character >= 0x200E && character <= 0x200F) || (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

/// Whether standard output obeys escape sequences.
bool isCapable() {
    const char* const terminal = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe): nobody here changes it.
    return isatty(STDOUT_FILENO) == 1 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

bool allowsColors(ColorMode mode) {
    if (mode != ColorMode::automatic) return mode == ColorMode::always;
    const char* const none = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): nobody here changes it.
    return isCapable() && (none == nullptr || *none == '\0');
}

constexpr std::string_view escapeSequence(Style style) {
    switch (style) {
        case Style::plain:
            return "";
        case Style::strong:
            return "\033[1m";
        case Style::faint:
            return "\033[2m";
        case Style::good:
            return "\033[32m";
        case Style::bad:
            return "\033[31m";
        case Style::live:
            return "\033[1;33m";
    }
    return "";
}

}  // namespace

std::size_t displayWidth(std::string_view text) {
    std::size_t columns = 0;
    forEachCharacter(text, [&](wchar_t character, std::string_view) {
        columns += width(character);
        return true;
    });
    return columns;
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    forEachCharacter(text, [&](wchar_t character, std::string_view bytes) {
        result += character == 0xFFFD || isObeyed(character) ? "\uFFFD" : bytes;
        return true;
    });
    return result;
}

std::string elided(std::string_view text, std::size_t columns) {
    if (displayWidth(text) <= columns) return std::string(text);
    std::string result;
    std::size_t used = 1;
    forEachCharacter(text, [&](wchar_t character, std::string_view bytes) {
        used += width(character);
        if (used > columns) return false;
        result += bytes;
        return true;
    });
    return result + "…";
}

Terminal::Terminal(ColorMode colors)
    : hasColors_(allowsColors(colors)), isInteractive_(isCapable() && isatty(STDIN_FILENO) == 1) {
    measure();
}

void Terminal::measure() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return;
    if (size.ws_col > 0) columns_ = size.ws_col;
    if (size.ws_row > 0) rows_ = size.ws_row;
}

std::string Terminal::styled(Style style, std::string_view text) const {
    if (!hasColors_ || style == Style::plain || text.empty()) return std::string(text);
    return std::string(escapeSequence(style)).append(text).append("\033[0m");
}

void Terminal::line(std::string_view text) {
    write(std::string(text) + '\n');
}

void Terminal::write(std::string_view text) {
    while (!text.empty() && failure_ == 0) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            failure_ = errno;
        }
    }
}

}  // namespace matchday
