#include "platform/posix/terminal_mode.h"

#include <unistd.h>

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

// Settings of a terminal that another job uses are not ours to change, and trying stops the process.
void apply(int descriptor, const termios& settings) {
    const pid_t foreground = tcgetpgrp(descriptor);
    if (foreground < 0 || foreground == getpgrp()) {
        retryInterrupted([&] { return tcsetattr(descriptor, TCSANOW, &settings); });
    }
}

termios rawSettings(termios settings) {
    settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    settings.c_cc[VMIN] = 1;
    settings.c_cc[VTIME] = 0;
    settings.c_cc[VSUSP] = _POSIX_VDISABLE;
    return settings;
}

}  // namespace

RawTerminalMode::RawTerminalMode(int descriptor) {
    SavedMode& saved = savedMode();
    const std::lock_guard lock(saved.mutex);
    if (saved.active || tcgetattr(descriptor, &saved.settings) != 0) {
        return;
    }
    saved.descriptor = descriptor;
    saved.active = true;
    active_ = true;
    apply(descriptor, rawSettings(saved.settings));
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
        apply(saved.descriptor, saved.settings);
        saved.active = false;
    }
}

void stopWithTerminalRestored(const std::function<void()>& stop) {
    SavedMode& saved = savedMode();
    const std::lock_guard lock(saved.mutex);
    if (saved.active) {
        apply(saved.descriptor, saved.settings);
    }
    stop();
}

void retakeTerminalMode() {
    SavedMode& saved = savedMode();
    const std::lock_guard lock(saved.mutex);
    if (saved.active) {
        apply(saved.descriptor, rawSettings(saved.settings));
    }
}

}  // namespace platform
