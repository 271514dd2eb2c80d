#pragma once

#include <termios.h>

#include <functional>

namespace platform {

// Takes echo, line editing and the key that suspends a program from a terminal for the object's life. The
// other signals from keys (Ctrl-C) go on.
class RawTerminalMode {
public:
    // Does nothing when the descriptor is not a terminal, or while another object has the terminal.
    explicit RawTerminalMode(int descriptor);
    ~RawTerminalMode();
    RawTerminalMode(const RawTerminalMode&) = delete;
    RawTerminalMode& operator=(const RawTerminalMode&) = delete;

private:
    bool active_ = false;
};

// The next three serve the signals that end, stop or continue the process; from any thread. They leave a
// terminal alone that belongs to another job by then.

// Gives the terminal back for good, whatever a RawTerminalMode took. For a process that is about to end.
void restoreTerminalMode();

// Gives the terminal back and calls `stop`, in which the process stops. Nothing takes the terminal before it
// returns.
void stopWithTerminalRestored(const std::function<void()>& stop);

// Takes again what a living RawTerminalMode had taken. For a process that continues.
void retakeTerminalMode();

}  // namespace platform
