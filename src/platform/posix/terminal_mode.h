#pragma once

#include <termios.h>

namespace platform {

// Takes echo and line editing from a terminal for the object's life. Signals from keys (Ctrl-C) go on.
class RawTerminalMode {
public:
    // Does nothing when the descriptor is no terminal.
    explicit RawTerminalMode(int descriptor);
    ~RawTerminalMode();
    RawTerminalMode(const RawTerminalMode&) = delete;
    RawTerminalMode& operator=(const RawTerminalMode&) = delete;

private:
    bool active_ = false;
};

// Gives the terminal back whatever a RawTerminalMode took. For a process that is about to be ended by a
// signal, from any thread.
void restoreTerminalMode();

}  // namespace platform
