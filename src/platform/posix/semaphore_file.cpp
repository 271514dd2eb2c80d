#include "platform/posix/semaphore_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <ctime>

namespace platform {

namespace {

// Where the C library keeps the semaphore "/name".
std::string pathOf(const std::string& name) {
    return "/dev/shm/sem." + name.substr(1);
}

// Neither a link nor the other end of a pipe is waited for or followed.
int openFile(const char* path) {
    return open(path, O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
}

bool isOwnSemaphore(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_size == sizeof(sem_t);
}

// With a second name the file may be something else of this user's.
bool isSafe(int file) {
    struct stat status {};
    return fstat(file, &status) == 0 && isOwnSemaphore(status) && status.st_nlink == 1 &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

timespec deadlineAfter(std::uint32_t milliseconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += milliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(milliseconds % 1000) * 1000000;
    if (deadline.tv_nsec >= 1000000000) {
        deadline.tv_nsec -= 1000000000;
        ++deadline.tv_sec;
    }
    return deadline;
}

// The content of a directory is nobody's business here, so a full one gets another name.
void removeOccupant(const char* path) {
    if (unlink(path) == 0 || rmdir(path) == 0) {
        return;
    }
    std::uint64_t random = 0;
    if (getrandom(&random, sizeof random, 0) != static_cast<ssize_t>(sizeof random)) {
        return;
    }
    char target[PATH_MAX];
    std::snprintf(target, sizeof target, "%s.moved-%016llx", path, static_cast<unsigned long long>(random));
    // Where that fails too, the name stays taken, which its user notices.
    static_cast<void>(renameat2(AT_FDCWD, path, AT_FDCWD, target, RENAME_NOREPLACE));
}

}  // namespace

std::unique_ptr<SemaphoreFile> SemaphoreFile::open(const std::string& name) {
    Descriptor file(openFile(pathOf(name).c_str()));
    // A hole in the file that the system has no memory for would end the process as well.
    if (!file.isOpen() || !isSafe(file.get()) || posix_fallocate(file.get(), 0, sizeof(sem_t)) != 0) {
        return nullptr;
    }
    void* memory = mmap(nullptr, sizeof(sem_t), PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        return nullptr;
    }
    return std::unique_ptr<SemaphoreFile>(new SemaphoreFile(file.release(), static_cast<sem_t*>(memory)));
}

SemaphoreFile::~SemaphoreFile() {
    munmap(semaphore_, sizeof(sem_t));
}

bool SemaphoreFile::wait(std::uint32_t milliseconds) {
    const timespec deadline = deadlineAfter(milliseconds);
    return retryInterrupted([&] { return sem_clockwait(semaphore_, CLOCK_MONOTONIC, &deadline); }) == 0;
}

bool SemaphoreFile::signal() {
    int value = 0;
    return (sem_getvalue(semaphore_, &value) == 0 && value > 0) || sem_post(semaphore_) == 0;
}

// Without waiting: who can read the file could lock it for ever.
void SemaphoreFile::markAsUsed() {
    flock(file_.get(), LOCK_SH | LOCK_NB);
}

void SemaphoreFile::clearName(const std::string& name) {
    const std::string file = pathOf(name);
    const char* const path = file.c_str();
    struct stat status {};
    if (lstat(path, &status) != 0) {
        return;
    }
    if (!isOwnSemaphore(status)) {
        removeOccupant(path);
        return;
    }
    const Descriptor opened(openFile(path));
    if (opened.isOpen() && flock(opened.get(), LOCK_EX | LOCK_NB) == 0) {
        unlink(path);
    }
}

}  // namespace platform
