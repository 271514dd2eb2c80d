#include "platform/program.h"

#include <unistd.h>

#include <cerrno>

namespace platform {

bool ownImagePath(std::string& outPath) {
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) {
            return false;
        }
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            outPath = path;
            return true;
        }
        path.resize(path.size() * 2);
    }
}

int lastSystemError() {
    return errno;
}

bool keepsRunningPrograms() {
    return false;
}

std::vector<std::string> administratorDirectories(Registry&) {
    return {"/opt", "/usr/local"};
}

}  // namespace platform
