#pragma once

#include <semaphore.h>

#include <cstdint>
#include <memory>
#include <string>

#include "platform/posix/system_calls.h"

namespace platform {

// A named semaphore that exists, used through its file in shared memory, as the C library itself does it. The
// library maps what it finds; a file that is too short, or that somebody cuts later, would end the process.
// So only a file is used that this user alone can write.
class SemaphoreFile {
public:
    // Null when there is none of that name ("/name"), or none that is safe.
    static std::unique_ptr<SemaphoreFile> open(const std::string& name);
    ~SemaphoreFile();
    SemaphoreFile(const SemaphoreFile&) = delete;
    SemaphoreFile& operator=(const SemaphoreFile&) = delete;

    bool wait(std::uint32_t milliseconds);
    // A semaphore that is signalled already stays signalled once.
    bool signal();
    // Marks the semaphore as used until this object goes; the kernel ends that for a process that is killed.
    void markAsUsed();

    // Moves out of the way what is under the name and is no semaphore in use: what a killed process left, and
    // what another user put there as far as this one may touch it.
    static void clearName(const std::string& name);

private:
    SemaphoreFile(int file, sem_t* semaphore) : file_(file), semaphore_(semaphore) {}

    const Descriptor file_;
    sem_t* const semaphore_;
};

}  // namespace platform
