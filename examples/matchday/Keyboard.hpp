#pragma once

#include <termios.h>

#include <functional>

namespace matchday {

/// The terminal's keys, one by one and without an echo, as long as this lives; read by a loop that waits for them and
/// drives the main run loop as well.
class Keyboard {
  public:
    /// The end of input, as Ctrl-D gives it.
    static constexpr char end = '\x04';

    Keyboard();
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    /// Runs until `isOver`. `onKey` gets the bytes of what is typed, and `end` when there is nobody to type.
    void run(const std::function<bool()>& isOver, const std::function<void(char key)>& onKey);

  private:
    termios before_{};
};

}  // namespace matchday
