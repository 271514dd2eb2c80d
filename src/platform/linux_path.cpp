#include "platform/linux_path.h"

#include <algorithm>

namespace platform {

namespace {

bool startsWithDrive(const std::string& path) {
    if (path.size() < 2 || path[1] != ':') {
        return false;
    }
    return (path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z');
}

}  // namespace

std::string linuxPath(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    if (startsWithDrive(native)) {
        native.erase(0, 2);
    }
    return native;
}

}  // namespace platform
