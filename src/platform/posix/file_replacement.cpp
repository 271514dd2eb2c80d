#include "platform/posix/file_replacement.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "platform/posix/system_calls.h"

namespace platform {

namespace {

// A name beside `path` that nobody can foresee; empty when the system has no random numbers.
std::string nameBeside(const std::string& path) {
    std::uint64_t random = 0;
    if (retryInterrupted([&] { return getrandom(&random, sizeof random, 0); }) !=
        static_cast<ssize_t>(sizeof random)) {
        return std::string();
    }
    char name[40];
    std::snprintf(name, sizeof name, ".tandrel-%016llx.tmp", static_cast<unsigned long long>(random));
    const std::size_t separator = path.rfind('/');
    return (separator == std::string::npos ? std::string() : path.substr(0, separator + 1)) + name;
}

int writeNewFile(const std::string& path, const std::string& content, mode_t mode, ModeRule rule) {
    Descriptor file(retryInterrupted(
        [&] { return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); }));
    if (!file.isOpen()) {
        return errno;
    }
    std::size_t done = 0;
    int status = writeAll(file.get(), content.data(), content.size(), done);
    if (status == 0 && rule == ModeRule::kExact && fchmod(file.get(), mode) != 0) {
        status = errno;
    }
    if (status == 0 && fsync(file.get()) != 0) {
        status = errno;
    }
    const int closed = file.close();
    return status != 0 ? status : closed;
}

// `make` makes something new beside the place and returns 0 or errno.
template <typename Make>
int replaceByNew(const std::string& path, Make make) {
    const std::string aside = nameBeside(path);
    if (path.empty() || aside.empty()) {
        return path.empty() ? ENOENT : EAGAIN;
    }
    int status = make(aside);
    if (status == EEXIST) {
        return status;  // somebody else's
    }
    if (status == 0 && rename(aside.c_str(), path.c_str()) != 0) {
        status = errno;
    }
    if (status != 0) {
        unlink(aside.c_str());
    }
    return status;
}

}  // namespace

int replaceFileContent(const std::string& path, const std::string& content, mode_t mode, ModeRule rule) {
    return replaceByNew(path,
                        [&](const std::string& aside) { return writeNewFile(aside, content, mode, rule); });
}

int replaceWithSymlink(const std::string& path, const std::string& target) {
    return replaceByNew(path, [&](const std::string& aside) {
        return symlink(target.data(), aside.data()) == 0 ? 0 : errno;
    });
}

}  // namespace platform
