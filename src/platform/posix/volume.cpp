#include "platform/posix/volume.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

#include "platform/file_system.h"
#include "platform/posix/system_calls.h"

namespace platform {

namespace {

std::string parentOf(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t separator = end == std::string::npos ? end : path.find_last_of('/', end);
    if (separator == std::string::npos) {
        return path.starts_with('/') ? "/" : ".";
    }
    return separator == 0 ? "/" : path.substr(0, separator);
}

bool isMissing(int error) {
    return error == ENOENT || error == ENOTDIR;
}

// Empty, with the error in errno, when it can't be looked at.
std::string realPathOf(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real == nullptr ? std::string() : std::string(real.get());
}

int statusOf(const std::string& path, struct stat& outStatus) {
    return stat(path.c_str(), &outStatus);
}

// The real path of the nearest directory that is there; otherwise as realPathOf. Some systems that lie over
// others give each file the device that it comes from.
std::string presentDirectory(std::string path) {
    std::string real = realPathOf(path);
    while (real.empty() && isMissing(errno) && path != "/" && path != ".") {
        path = parentOf(path);
        real = realPathOf(path);
    }
    struct stat status {};
    const bool isFile = !real.empty() && statusOf(real, status) == 0 && !S_ISDIR(status.st_mode);
    return isFile ? parentOf(real) : real;
}

// The highest directory of the path that lies on the same device.
std::string mountPointOf(std::string path, dev_t device) {
    struct stat above {};
    while (path != "/" && statusOf(parentOf(path), above) == 0 && above.st_dev == device) {
        path = parentOf(path);
    }
    return path;
}

// The root user may use what is reserved for the system as well.
std::int64_t freeBytes(const struct statvfs& space) {
    const std::uint64_t blocks = geteuid() == 0 ? space.f_bfree : space.f_bavail;
    const std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    const std::uint64_t size = std::max<std::uint64_t>(space.f_frsize, 1);
    return static_cast<std::int64_t>(blocks > most / size ? most : blocks * size);
}

}  // namespace

int volumeOf(const std::string& path, Volume& outVolume) {
    outVolume = {};
    const std::string present = presentDirectory(path);
    struct stat status {};
    struct statvfs space {};
    if (present.empty() || statusOf(present, status) != 0 ||
        retryInterrupted([&] { return statvfs(present.c_str(), &space); }) != 0) {
        return errno;
    }
    // Some file systems don't count what they hold.
    if (space.f_blocks == 0) {
        return ENOTSUP;
    }
    outVolume = {mountPointOf(present, status.st_dev), std::to_string(status.st_dev), freeBytes(space)};
    return 0;
}

}  // namespace platform
