#include "platform/posix/protected_path.h"

#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr uid_t kRoot = 0;
constexpr gid_t kRootGroup = 0;

bool isTrustedOwner(uid_t owner, Protection protection) {
    return owner == kRoot || (protection == Protection::kUserAndAdministrators && owner == geteuid());
}

// An access list of the file system shows in the bits of the group, too: they are the most that it grants.
bool canOthersWrite(const struct stat& status) {
    return (status.st_mode & S_IWOTH) != 0 ||
           ((status.st_mode & S_IWGRP) != 0 && status.st_gid != kRootGroup);
}

bool isSafe(const std::string& path, Protection protection, bool mayBeSticky) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0 || !isTrustedOwner(status.st_uid, protection)) {
        return false;
    }
    return !canOthersWrite(status) || (mayBeSticky && (status.st_mode & S_ISVTX) != 0);
}

// "/" for what lies in it.
std::string parentOf(const std::string& path) {
    const std::size_t separator = path.rfind('/');
    return separator == 0 ? "/" : path.substr(0, separator);
}

}  // namespace

bool isProtectedPath(const std::string& realPath, Protection protection) {
    if (!isSafe(realPath, protection, false)) {
        return false;
    }
    std::string level = realPath;
    for (bool mayBeSticky = false; level != "/"; mayBeSticky = true) {
        level = parentOf(level);
        if (!isSafe(level, protection, mayBeSticky)) {
            return false;
        }
    }
    return true;
}

}  // namespace platform
