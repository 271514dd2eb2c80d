#pragma once

#include <sys/types.h>

#include <cstdint>

#include "platform/posix/system_calls.h"

namespace platform {

// A process held by a descriptor, so that its number can't be reused for another one. On kernels without such
// descriptors the number alone has to do.
class ProcessHandle {
public:
    explicit ProcessHandle(pid_t id);

    // False when there is no such process or no right to.
    bool sendSignal(int signal);
    // Waits until the process has ended, at most `milliseconds`. True when it has.
    bool waitForEnd(std::uint32_t milliseconds);

private:
    bool pollForEnd(std::uint32_t milliseconds);

    pid_t id_;
    bool isGone_ = false;
    Descriptor descriptor_;
};

}  // namespace platform
