#pragma once

#include <fcntl.h>

#include <cerrno>

#include "platform/posix/system_calls.h"
#include "platform/quiet_reading.h"

namespace platform {

// openat, repeated when a signal interrupts it, which keeps the time of the last access if QuietReading asks
// for that. Only the owner and root may, everybody else reads as usual.
inline int openQuietly(int base, const char* path, int flags, mode_t mode = 0) {
    const bool isQuiet = quietReadings > 0 && (flags & (O_ACCMODE | O_CREAT)) == O_RDONLY;
    if (isQuiet) {
        const int descriptor =
            retryInterrupted([&] { return ::openat(base, path, flags | O_NOATIME, mode); });
        if (descriptor >= 0 || errno != EPERM) {
            return descriptor;
        }
    }
    return retryInterrupted([&] { return ::openat(base, path, flags, mode); });
}

}  // namespace platform
