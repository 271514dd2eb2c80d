#include "platform/posix/posix_file.h"

#include <sys/stat.h>
#include <unistd.h>

namespace platform {

static_assert(sizeof(off_t) == 8, "positions are 64 bits wide");

// One system call moves less than asked from pipes, and from files beyond 2 GiB: callers rely on whole
// buffers.
int PosixFile::read(void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    outDone = 0;
    while (outDone < size) {
        const ssize_t done = retryInterrupted(
            [&] { return ::read(descriptor_.get(), static_cast<char*>(buffer) + outDone, size - outDone); });
        if (done < 0) {
            return errno;
        }
        if (done == 0) {
            return 0;
        }
        outDone += static_cast<std::uint32_t>(done);
    }
    return 0;
}

int PosixFile::write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    std::size_t done = 0;
    const int status = writeAll(descriptor_.get(), static_cast<const char*>(buffer), size, done);
    outDone = static_cast<std::uint32_t>(done);
    return status;
}

int PosixFile::seek(std::int64_t distance, Origin origin, std::int64_t& outPosition) {
    const int whence = origin == Origin::kStart ? SEEK_SET : origin == Origin::kCurrent ? SEEK_CUR : SEEK_END;
    const off_t position = lseek(descriptor_.get(), distance, whence);
    if (position < 0) {
        return errno;
    }
    outPosition = position;
    return 0;
}

std::int64_t PosixFile::size() {
    struct stat status {};
    return fstat(descriptor_.get(), &status) == 0 ? status.st_size : -1;
}

int PosixFile::truncateHere() {
    const off_t position = lseek(descriptor_.get(), 0, SEEK_CUR);
    if (position < 0) {
        return errno;
    }
    return retryInterrupted([&] { return ftruncate(descriptor_.get(), position); }) == 0 ? 0 : errno;
}

int PosixFile::flush() {
    if (retryInterrupted([&] { return fsync(descriptor_.get()); }) == 0) {
        return 0;
    }
    // Pipes and devices have nothing to bring to a disk.
    return errno == EINVAL || errno == EROFS ? 0 : errno;
}

}  // namespace platform
