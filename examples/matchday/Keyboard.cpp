#include "Keyboard.hpp"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>

namespace matchday {

Keyboard::Keyboard() {
    tcgetattr(STDIN_FILENO, &before_);
    termios raw = before_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &raw);
}

Keyboard::~Keyboard() {
    tcsetattr(STDIN_FILENO, TCSANOW, &before_);
}

void Keyboard::run(const std::function<bool()>& isOver, const std::function<void(char)>& onKey) {
    corvane::RunLoop& loop = corvane::RunLoop::main();
    pollfd ready[] = {{loop.pollDescriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    while (!isOver()) {
        if (poll(ready, 2, -1) < 0 && errno != EINTR) break;
        loop.drain();
        if (ready[1].revents == 0) continue;
        char buffer[64];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) {
            ready[1].fd = -1;
            onKey(end);
            continue;
        }
        const std::string_view typed(buffer, static_cast<std::size_t>(count));
        // What begins with Escape is a key without a text, such as an arrow.
        for (const char key : typed.substr(0, typed.find('\033')))
            onKey(key);
    }
}

}  // namespace matchday
