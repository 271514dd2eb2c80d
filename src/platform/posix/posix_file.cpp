#include "platform/posix/posix_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <string>

#include "platform/linux_path.h"

namespace platform {

namespace {

constexpr char kAccessList[] = "system.posix_acl_access";

int errorOf(int callResult) {
    return callResult == 0 ? 0 : errno;
}

mode_t modeOf(FileRights rights) {
    switch (rights) {
        case FileRights::kPlain:
            return 0644;
        case FileRights::kProgram:
            return 0755;
        case FileRights::kPrivate:
            return 0600;
    }
    return 0600;
}

// A descriptor that only names a file takes no calls on its content, but has a path that no rename changes.
std::string pathOf(const Descriptor& named) {
    return "/proc/self/fd/" + std::to_string(named.get());
}

// The owner first: a change of it takes bits of the mode away.
int copyOwnerAndMode(const struct stat& wanted, int descriptor) {
    struct stat present {};
    if (fstat(descriptor, &present) != 0) {
        return errno;
    }
    const bool isOthers = wanted.st_uid != present.st_uid || wanted.st_gid != present.st_gid;
    if (isOthers && fchown(descriptor, wanted.st_uid, wanted.st_gid) != 0) {
        return errno;
    }
    return errorOf(fchmod(descriptor, wanted.st_mode & 07777));
}

// `outList` is empty where a file has none.
int readAccessList(const Descriptor& from, std::string& outList) {
    const std::string path = pathOf(from);
    outList.clear();
    const ssize_t size = getxattr(path.c_str(), kAccessList, nullptr, 0);
    if (size < 0) {
        return errno == ENODATA || errno == EOPNOTSUPP || errno == ENOENT ? 0 : errno;
    }
    outList.resize(static_cast<std::size_t>(size));
    const ssize_t got = getxattr(path.c_str(), kAccessList, outList.data(), outList.size());
    outList.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    return got < 0 ? errno : 0;
}

// Without the list the mode's group bits, which bound it, would be rights of the group.
int copyAccessList(const Descriptor& from, int descriptor) {
    std::string list;
    const int status = readAccessList(from, list);
    return status != 0 || list.empty()
               ? status
               : errorOf(fsetxattr(descriptor, kAccessList, list.data(), list.size(), 0));
}

// Only names the file, also one that can't be read.
Descriptor openToName(std::string_view path) {
    return Descriptor(
        retryInterrupted([&] { return ::open(linuxPath(path).c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC); }));
}

// 0 for a plain file that this user may replace.
int statusOfRightsSource(const Descriptor& source, struct stat& outStatus) {
    if (!source.isOpen() || fstat(source.get(), &outStatus) != 0) {
        return errno;
    }
    if (!S_ISREG(outStatus.st_mode)) {
        return S_ISLNK(outStatus.st_mode) ? ELOOP : S_ISDIR(outStatus.st_mode) ? EISDIR : ENXIO;
    }
    const bool isRefused = faccessat(AT_FDCWD, pathOf(source).c_str(), W_OK, AT_EACCESS) != 0;
    return isRefused && errno != ENOENT ? errno : 0;
}

}  // namespace

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

int PosixFile::setRights(FileRights rights) {
    return errorOf(fchmod(descriptor_.get(), modeOf(rights)));
}

int PosixFile::takeRightsOf(std::string_view path) {
    const Descriptor source = openToName(path);
    struct stat wanted {};
    int status = statusOfRightsSource(source, wanted);
    status = status != 0 ? status : copyOwnerAndMode(wanted, descriptor_.get());
    return status != 0 ? status : copyAccessList(source, descriptor_.get());
}

std::string rightsOfFile(std::string_view path) {
    const Descriptor source = openToName(path);
    struct stat status {};
    std::string list;
    if (statusOfRightsSource(source, status) != 0 || readAccessList(source, list) != 0) {
        return "";
    }
    return std::to_string(status.st_uid) + ' ' + std::to_string(status.st_gid) + ' ' +
           std::to_string(status.st_mode & 07777) + ' ' + list;
}

int PosixFile::makeExecutable() {
    struct stat status {};
    if (fstat(descriptor_.get(), &status) != 0) {
        return errno;
    }
    const mode_t wanted = (status.st_mode | (status.st_mode & (S_IRUSR | S_IRGRP | S_IROTH)) >> 2) & 07777;
    if (wanted == (status.st_mode & 07777)) {
        return 0;
    }
    return status.st_nlink > 1 ? EMLINK : errorOf(fchmod(descriptor_.get(), wanted));
}

}  // namespace platform
