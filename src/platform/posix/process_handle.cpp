#include "platform/posix/process_handle.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <string>

#include "platform/clock.h"
#include "platform/posix/proc_files.h"

namespace platform {

namespace {

constexpr std::uint32_t kLookMilliseconds = 10;

// The C library's own functions for these calls are younger than the oldest one that the programs shall run
// with.
int openProcess(pid_t id) {
    return static_cast<int>(syscall(SYS_pidfd_open, id, 0));
}

bool signalProcess(int descriptor, int signal) {
    return syscall(SYS_pidfd_send_signal, descriptor, signal, nullptr, 0) == 0;
}

}  // namespace

ProcessHandle::ProcessHandle(pid_t id) : id_(id), descriptor_(openProcess(id)) {
    isGone_ = !descriptor_.isOpen() && errno == ESRCH;
}

bool ProcessHandle::sendSignal(int signal) {
    if (isGone_) {
        return false;
    }
    if (descriptor_.isOpen()) {
        return signalProcess(descriptor_.get(), signal);
    }
    return kill(id_, signal) == 0;
}

bool ProcessHandle::waitForEnd(std::uint32_t milliseconds) {
    const std::uint64_t start = monotonicMilliseconds();
    for (;;) {
        const std::uint64_t elapsed = std::min<std::uint64_t>(monotonicMilliseconds() - start, milliseconds);
        const std::uint32_t left = milliseconds - static_cast<std::uint32_t>(elapsed);
        if (isGone_ || pollForEnd(left)) {
            return true;
        }
        if (left == 0) {
            return false;
        }
    }
}

// One wait, which may end early.
bool ProcessHandle::pollForEnd(std::uint32_t milliseconds) {
    if (descriptor_.isOpen()) {
        pollfd ended{descriptor_.get(), POLLIN, 0};
        constexpr std::uint32_t kMaxWait = 60000;
        return poll(&ended, 1, static_cast<int>(std::min(milliseconds, kMaxWait))) > 0;
    }
    if (!proc_files::isAlive(id_)) {
        return true;
    }
    sleepMilliseconds(std::min(milliseconds, kLookMilliseconds));
    return false;
}

}  // namespace platform
