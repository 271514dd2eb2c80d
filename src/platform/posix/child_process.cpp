#include "platform/posix/child_process.h"

#include <sys/wait.h>

#include <mutex>
#include <vector>

namespace platform {

namespace {

struct DroppedChildren {
    std::mutex mutex;
    std::vector<pid_t> ids;
};

DroppedChildren& droppedChildren() {
    static DroppedChildren dropped;
    return dropped;
}

bool hasEnded(pid_t id) {
    return retryInterrupted([&] { return waitpid(id, nullptr, WNOHANG); }) != 0;
}

}  // namespace

void collectDroppedChildren() {
    DroppedChildren& dropped = droppedChildren();
    const std::lock_guard lock(dropped.mutex);
    std::erase_if(dropped.ids, hasEnded);
}

PosixChildProcess::~PosixChildProcess() {
    if (!ended_ && !collect()) {
        DroppedChildren& dropped = droppedChildren();
        const std::lock_guard lock(dropped.mutex);
        dropped.ids.push_back(id_);
    }
}

bool PosixChildProcess::wait(std::uint32_t milliseconds) {
    return ended_ || (handle_.waitForEnd(milliseconds) && collect());
}

bool PosixChildProcess::collect() {
    int status = 0;
    const pid_t result = retryInterrupted([&] { return waitpid(id_, &status, WNOHANG); });
    if (result == 0) {
        return false;
    }
    ended_ = true;
    if (result == id_) {
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return true;
}

}  // namespace platform
