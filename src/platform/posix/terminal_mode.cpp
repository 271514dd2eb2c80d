#include "platform/posix/terminal_mode.h"

#include <mutex>

#include "platform/posix/system_calls.h"

namespace platform {

namespace {

// The process has one controlling terminal, and one thread that reads from it.
struct SavedMode {
    std::mutex mutex;
    bool active = false;
    int descriptor = -1;
    termios settings{};
};

SavedMode& savedMode() {
    // Never destroyed: the thread that serves signals may need it until the process is gone.
    static SavedMode& mode = *new SavedMode;
    return mode;
}

}  // namespace

RawTerminalMode::RawTerminalMode(int descriptor) {
    SavedMode& saved = savedMode();
    const std::lock_guard lock(saved.mutex);
    termios settings{};
    if (saved.active || tcgetattr(descriptor, &settings) != 0) {
        return;
    }
    saved.settings = settings;
    settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    if (retryInterrupted([&] { return tcsetattr(descriptor, TCSANOW, &settings); }) == 0) {
        saved.active = true;
        saved.descriptor = descriptor;
        active_ = true;
    }
}

RawTerminalMode::~RawTerminalMode() {
    if (active_) {
        restoreTerminalMode();
    }
}

void restoreTerminalMode() {
    SavedMode& saved = savedMode();
    const std::lock_guard lock(saved.mutex);
    if (saved.active) {
        retryInterrupted([&] { return tcsetattr(saved.descriptor, TCSANOW, &saved.settings); });
        saved.active = false;
    }
}

}  // namespace platform
