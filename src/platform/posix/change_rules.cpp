#include "platform/change_rules.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/linux_path.h"

namespace platform {

namespace {

int numberOf(Refusal refusal) {
    switch (refusal) {
        case Refusal::kMissing:
        case Refusal::kMissingDirectory:
            return ENOENT;
        case Refusal::kNoDirectory:
        case Refusal::kNotADirectory:
        case Refusal::kOpensNoDirectory:
            return ENOTDIR;
        case Refusal::kExists:
        case Refusal::kTaken:
            return EEXIST;
        case Refusal::kOpensDirectory:
        case Refusal::kIsDirectory:
        case Refusal::kReplacesDirectory:
        case Refusal::kResolvesDirectory:
        case Refusal::kNoProgram:
            return EISDIR;
        case Refusal::kNotEmpty:
            return ENOTEMPTY;
        case Refusal::kRoot:
            return EBUSY;
        case Refusal::kOtherVolume:
            return EXDEV;
        case Refusal::kOpensLink:
        case Refusal::kTooManyLinks:
            return ELOOP;
        case Refusal::kDevice:
            return EPERM;
        case Refusal::kDenied:
            return EACCES;
        case Refusal::kNotOpenFor:
        case Refusal::kClosed:
            return EBADF;
        case Refusal::kNoLink:
        case Refusal::kBeforeStart:
        case Refusal::kBadName:
        case Refusal::kBadAccess:
            return EINVAL;
        case Refusal::kDiskFull:
            return ENOSPC;
        case Refusal::kNotKept:
            return EFBIG;
        case Refusal::kAtRestart:
            return ENOTSUP;
        case Refusal::kLinking:
            return 0;
    }
    return EINVAL;
}

std::string directoryOf(const std::string& path) {
    const std::size_t separator = path.find_last_of('/');
    return separator == std::string::npos ? "." : separator == 0 ? "/" : path.substr(0, separator);
}

// The entry of a directory that everybody may write to belongs to its owner.
int stickyRefusal(const std::string& directory, const std::string& path) {
    struct stat outer {};
    struct stat entry {};
    const uid_t user = geteuid();
    if (user == 0 || stat(directory.data(), &outer) != 0 || (outer.st_mode & S_ISVTX) == 0 ||
        lstat(path.data(), &entry) != 0) {
        return 0;
    }
    return outer.st_uid == user || entry.st_uid == user ? 0 : EPERM;
}

// The mode in the text of rightsOf, between the owner's numbers and the access list.
bool findMode(const std::string& rights, std::size_t& outStart, std::size_t& outEnd) {
    const std::size_t first = rights.find(' ');
    const std::size_t second = first == std::string::npos ? first : rights.find(' ', first + 1);
    outStart = second == std::string::npos ? second : second + 1;
    outEnd = second == std::string::npos ? second : rights.find(' ', outStart);
    return outEnd != std::string::npos;
}

std::string rightsWithMode(unsigned mode) {
    return std::to_string(geteuid()) + ' ' + std::to_string(getegid()) + ' ' + std::to_string(mode) + ' ';
}

class PosixChangeRules : public ChangeRules {
public:
    int statusOf(Refusal refusal) const override { return numberOf(refusal); }

    int wouldRefuse(Intent intent, std::string_view path) override {
        const std::string native = linuxPath(path);
        if (intent == Intent::kWriteFile) {
            return faccessat(AT_FDCWD, native.data(), W_OK, AT_EACCESS) == 0 ? 0 : errno;
        }
        const std::string directory = directoryOf(native);
        if (faccessat(AT_FDCWD, directory.data(), W_OK | X_OK, AT_EACCESS) != 0) {
            return errno;
        }
        return intent == Intent::kMakeEntry ? 0 : stickyRefusal(directory, native);
    }

    int partsOf(std::string_view path, PathParts& outParts) override {
        outParts = {"/", {}};
        std::string native = linuxPath(path);
        if (native.empty() || native.find('\0') != std::string::npos) {
            return native.empty() ? ENOENT : EINVAL;
        }
        if (native.front() != '/') {
            char current[PATH_MAX];
            if (getcwd(current, sizeof current) == nullptr) {
                return errno;
            }
            native.insert(0, 1, '/').insert(0, current);
        }
        for (std::size_t at = 0; at < native.size();) {
            const std::size_t end = std::min(native.find('/', at), native.size());
            std::string part = native.substr(at, end - at);
            if (!part.empty() && part != ".") {
                outParts.parts.push_back(std::move(part));
            }
            at = end + 1;
        }
        return 0;
    }

    char separator() const override { return '/'; }
    std::string nameKey(std::string_view name) const override { return std::string(name); }
    bool distinguishesCase() const override { return true; }
    bool isPlainName(std::string_view name) const override {
        return !name.empty() && name != "." && name != ".." &&
               name.find_first_of(std::string_view("/\\\0", 3)) == std::string_view::npos;
    }
    bool movesDirectories() const override { return true; }

    std::string rightsOfNew(FileRights rights) const override {
        return rightsWithMode(rights == FileRights::kPlain     ? 0644
                              : rights == FileRights::kProgram ? 0755
                                                               : 0600);
    }
    std::string rightsOfUnset() const override {
        // The mask can only be read by setting it.
        return rightsWithMode(0644);
    }
    std::string asProgram(const std::string& rights) const override {
        std::size_t start = 0;
        std::size_t end = 0;
        if (!findMode(rights, start, end)) {
            return rights;
        }
        const auto mode = static_cast<unsigned>(std::strtoul(rights.data() + start, nullptr, 10));
        const unsigned marked = mode | (mode & (S_IRUSR | S_IRGRP | S_IROTH)) >> 2;
        return rights.substr(0, start) + std::to_string(marked) + rights.substr(end);
    }
    bool isProgram(const std::string& rights) const override {
        std::size_t start = 0;
        std::size_t end = 0;
        return findMode(rights, start, end) &&
               (std::strtoul(rights.data() + start, nullptr, 10) & S_IXUSR) != 0;
    }
    std::string withDirectoryRights(const std::string& rights) const override { return rights; }
};

}  // namespace

ChangeRules& systemChangeRules() {
    static PosixChangeRules rules;
    return rules;
}

}  // namespace platform
