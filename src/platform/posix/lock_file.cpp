#include "platform/posix/lock_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/clock.h"
#include "platform/posix/system_calls.h"

namespace platform {

namespace {

constexpr std::uint32_t kLookMilliseconds = 50;

class LockFile : public NamedLock {
public:
    LockFile(int file, const char* path) : file_(file), path_(path) {}
    // Before the lock ends with the descriptor: afterwards the file may be another process's.
    ~LockFile() override { unlink(path_.c_str()); }

private:
    const Descriptor file_;
    const std::string path_;
};

int openFile(const char* path) {
    return open(path, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
}

bool isOwnFile(int file) {
    struct stat status {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

// False when the holder before took the file away between this process's opening and locking it.
bool isStillNamed(int file, const char* path) {
    struct stat opened {};
    struct stat named {};
    return fstat(file, &opened) == 0 && lstat(path, &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

LockResult tryLock(const char* path, std::unique_ptr<NamedLock>& outLock) {
    Descriptor file(openFile(path));
    if (!file.isOpen() || !isOwnFile(file.get())) {
        return LockResult::kUnavailable;
    }
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? LockResult::kBusy : LockResult::kUnavailable;
    }
    if (!isStillNamed(file.get(), path)) {
        return LockResult::kBusy;
    }
    outLock = std::make_unique<LockFile>(file.release(), path);
    return LockResult::kTaken;
}

}  // namespace

LockResult lockFile(const std::string& directory, const std::string& name, std::uint32_t milliseconds,
                    std::unique_ptr<NamedLock>& outLock) {
    outLock.reset();
    mkdir(directory.c_str(), 0755);
    const std::string path = directory + "/" + name + ".lock";
    const std::uint64_t start = monotonicMilliseconds();
    for (;;) {
        const LockResult result = tryLock(path.c_str(), outLock);
        if (result != LockResult::kBusy || monotonicMilliseconds() - start >= milliseconds) {
            return result;
        }
        sleepMilliseconds(kLookMilliseconds);
    }
}

}  // namespace platform
