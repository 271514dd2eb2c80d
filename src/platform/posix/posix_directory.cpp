#include "platform/posix/posix_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string_view>

#include "platform/linux_path.h"
#include "platform/posix/posix_file.h"
#include "platform/posix/quiet_open.h"

namespace platform {

namespace {

int errorOf(int callResult) {
    return callResult == 0 ? 0 : errno;
}

struct StreamCloser {
    void operator()(DIR* directory) const { closedir(directory); }
};
using DirectoryStream = std::unique_ptr<DIR, StreamCloser>;

// The calls of this folder turn `\` into `/`, so a name that holds one would lead elsewhere.
bool isPlainName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == std::string_view::npos;
}

bool isDirectoryEntry(DIR* directory, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status {};
    return fstatat(dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

DiskEntry diskEntryOf(DIR* directory, const char* name) {
    DiskEntry entry;
    entry.name = name;
    entry.isNameable = isPlainName(name);
    struct stat status {};
    if (fstatat(dirfd(directory), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        entry.kind = errno == ENOENT ? PathKind::kNothing : PathKind::kOther;
        return entry;
    }
    entry.kind = pathKindOf(status.st_mode);
    if (entry.kind == PathKind::kFile) {
        entry.size = status.st_size;
        entry.isProgram = (status.st_mode & S_IXUSR) != 0;
    }
    return entry;
}

// Reads from a descriptor of its own, because the stream closes it and moves its position.
DirectoryStream streamOf(int descriptor) {
    const int own = openQuietly(descriptor, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DirectoryStream stream(own < 0 ? nullptr : fdopendir(own));
    if (own >= 0 && stream == nullptr) {
        ::close(own);
    }
    return stream;
}

// Calls `visit` with the stream and each entry. 0, or the system's error number.
template <typename Visitor>
int forEachEntry(int descriptor, Visitor visit) {
    const DirectoryStream directory = streamOf(descriptor);
    if (directory == nullptr) {
        return errno;
    }
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(directory.get());
        if (entry == nullptr) {
            return errno;
        }
        visit(directory.get(), *entry);
    }
}

// For file systems that can't rename without replacing: a look before the leap.
int moveToFreePath(int base, const char* path, const char* to) {
    if (renameat2(base, path, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    struct stat status {};
    if (lstat(to, &status) == 0) {
        return EEXIST;
    }
    return errorOf(renameat(base, path, AT_FDCWD, to));
}

// Entries whose names no path can mean count as well.
int emptinessOf(int descriptor) {
    const DirectoryStream directory = streamOf(descriptor);
    if (directory == nullptr) {
        return errno;
    }
    errno = 0;
    while (const dirent* entry = readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            return ENOTEMPTY;
        }
    }
    return errno;
}

}  // namespace

PathKind pathKindOf(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFREG:
            return PathKind::kFile;
        case S_IFDIR:
            return PathKind::kDirectory;
        case S_IFLNK:
            return PathKind::kLink;
        default:
            return PathKind::kOther;
    }
}

int PosixDirectory::takeFileAway(int base, const std::string& path, const std::string& to) {
    const char* const from = path.c_str();
    struct stat status {};
    if (fstatat(base, from, &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    // A device is nobody's file.
    return S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode) ? EPERM
                                                              : moveToFreePath(base, from, to.c_str());
}

// Something may come into it up to the last moment, so it is looked at again when it has moved.
int PosixDirectory::takeDirectoryAway(int base, const std::string& path, const std::string& to) {
    const char* const from = path.c_str();
    const char* const target = to.c_str();
    const Descriptor taken(retryInterrupted(
        [&] { return openat(base, from, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
    if (!taken.isOpen()) {
        return errno;
    }
    int status = emptinessOf(taken.get());
    status = status != 0 ? status : moveToFreePath(base, from, target);
    if (status != 0) {
        return status;
    }
    status = emptinessOf(taken.get());
    if (status != 0) {
        renameat2(AT_FDCWD, target, base, from, RENAME_NOREPLACE);
    }
    return status;
}

int PosixDirectory::open(int base, const std::string& path, int flags,
                         std::unique_ptr<Directory>& outDirectory) {
    outDirectory.reset();
    const int descriptor =
        openQuietly(base, path.data(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC | flags);
    if (descriptor < 0) {
        return errno;
    }
    outDirectory = std::make_unique<PosixDirectory>(descriptor);
    return 0;
}

int PosixDirectory::list(std::vector<DirectoryEntry>& outEntries) {
    outEntries.clear();
    return forEachEntry(descriptor_.get(), [&](DIR* directory, const dirent& entry) {
        if (isPlainName(entry.d_name)) {
            outEntries.push_back({entry.d_name, isDirectoryEntry(directory, entry)});
        }
    });
}

int PosixDirectory::listDisk(std::vector<DiskEntry>& outEntries) {
    outEntries.clear();
    return forEachEntry(descriptor_.get(), [&](DIR* directory, const dirent& entry) {
        const std::string_view name = entry.d_name;
        if (name != "." && name != "..") {
            outEntries.push_back(diskEntryOf(directory, name.data()));
        }
    });
}

int PosixDirectory::openDirectory(std::string_view name, std::unique_ptr<Directory>& outDirectory) {
    outDirectory.reset();
    return isPlainName(name) ? open(descriptor_.get(), std::string(name), O_NOFOLLOW, outDirectory) : EINVAL;
}

// A device is nobody's file.
int PosixDirectory::removeFile(std::string_view name) {
    if (!isPlainName(name)) {
        return EINVAL;
    }
    const std::string entry(name);
    struct stat status {};
    if (fstatat(descriptor_.get(), entry.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode))) {
        return EPERM;
    }
    return errorOf(unlinkat(descriptor_.get(), entry.c_str(), 0));
}

int PosixDirectory::removeDirectory(std::string_view name) {
    return isPlainName(name) ? errorOf(unlinkat(descriptor_.get(), std::string(name).c_str(), AT_REMOVEDIR))
                             : EINVAL;
}

// Opening must not wait for the other end of a pipe.
int PosixDirectory::openFile(std::string_view name, std::unique_ptr<File>& outFile) {
    outFile.reset();
    if (!isPlainName(name)) {
        return EINVAL;
    }
    const std::string entry(name);
    const int descriptor =
        openQuietly(descriptor_.get(), entry.data(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    auto file = std::make_unique<PosixFile>(descriptor);
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? EISDIR : ENXIO;
    }
    outFile = std::move(file);
    return 0;
}

int PosixDirectory::takeFileAway(std::string_view name, std::string_view to) {
    return isPlainName(name) ? takeFileAway(descriptor_.get(), std::string(name), linuxPath(to)) : EINVAL;
}

int PosixDirectory::takeDirectoryAway(std::string_view name, std::string_view to) {
    return isPlainName(name) ? takeDirectoryAway(descriptor_.get(), std::string(name), linuxPath(to))
                             : EINVAL;
}

}  // namespace platform
