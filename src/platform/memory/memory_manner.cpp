#include "platform/memory/memory_manner.h"

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "platform/linux_path.h"
#include "platform/memory/memory_file_system.h"

namespace {

struct ErrorWords {
    int status;
    const char* onLinux;
    const char* onWindows;
};

constexpr ErrorWords kErrorWords[] = {
    {MemoryFileSystem::kNotFound, "No such file or directory", "The system cannot find the file specified."},
    {MemoryFileSystem::kAccessDenied, "Permission denied", "Access is denied."},
    {MemoryFileSystem::kBadHandle, "Bad file descriptor", "The handle is invalid."},
    {MemoryFileSystem::kOtherVolume, "Invalid cross-device link",
     "The system cannot move the file to a different disk drive."},
    {MemoryFileSystem::kExists, "File exists", "The file exists."},
    {MemoryFileSystem::kDiskFull, "No space left on device", "There is not enough space on the disk."},
    {MemoryFileSystem::kNotEmpty, "Directory not empty", "The directory is not empty."},
    {MemoryFileSystem::kIsDirectory, "Is a directory", "The directory name is invalid."},
};

}  // namespace

std::string MemoryManner::writtenPath(std::string_view path) const {
    return isWindows() ? std::string(path) : platform::linuxPath(path);
}

std::string MemoryManner::pathIdentity(std::string_view path) const {
    std::string identity;
    for (const char c : OUtils::toLowerAscii(writtenPath(path))) {
        const bool isSeparator = OUtils::isSeparator(c);
        if (!isSeparator || !identity.ends_with('/')) {
            identity += isSeparator ? '/' : c;
        }
    }
    return identity;
}

const char* MemoryManner::textLineEnd() const {
    return isWindows() ? "\r\n" : "\n";
}

std::string MemoryManner::errorText(int status) const {
    for (const ErrorWords& words : kErrorWords) {
        if (words.status == status) {
            return isWindows() ? words.onWindows : words.onLinux;
        }
    }
    return "error " + std::to_string(status);
}

std::string MemoryManner::registryErrorText(int status) const {
    return errorText(status);
}
