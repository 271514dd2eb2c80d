#include "platform/file_system.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unordered_set>

#include "platform/linux_path.h"
#include "platform/posix/posix_directory.h"
#include "platform/posix/posix_file.h"
#include "platform/posix/protected_path.h"
#include "platform/posix/quiet_open.h"
#include "platform/posix/state_directory.h"
#include "platform/posix/system_calls.h"
#include "platform/posix/volume.h"

namespace platform {

namespace {

int errorOf(int callResult) {
    return callResult == 0 ? 0 : errno;
}

bool accessFlag(std::uint32_t access, int& outFlag) {
    switch (access & (kRead | kWrite)) {
        case kRead:
            outFlag = O_RDONLY;
            return true;
        case kWrite:
            outFlag = O_WRONLY;
            return true;
        case kRead | kWrite:
            outFlag = O_RDWR;
            return true;
        default:
            return false;
    }
}

int dispositionFlags(Disposition disposition) {
    switch (disposition) {
        case Disposition::kOpenExisting:
            return 0;
        case Disposition::kOpenOrCreate:
            return O_CREAT;
        case Disposition::kCreateAlways:
            return O_CREAT | O_TRUNC;
        case Disposition::kCreateNew:
        case Disposition::kCreatePrivate:
            return O_CREAT | O_EXCL | O_NOFOLLOW;
    }
    return 0;
}

// What can't be read or written as a file is refused: a pipe in a file's place would wait for its other end.
int refusalOf(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return errno;
    }
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    return S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) ? ENXIO : 0;
}

// Opening must not wait for the other end of a pipe; what is opened then works as usual.
int openWithoutWaiting(const char* path, int flags, mode_t mode) {
    const int descriptor = openQuietly(AT_FDCWD, path, flags | O_NONBLOCK, mode);
    if (descriptor >= 0) {
        fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    }
    return descriptor;
}

// For file systems that can't rename without replacing. A hard link fails on an existing name as well; only
// directories, which have no hard links, are left with a look before the leap.
int moveWithoutFlags(const char* from, const char* to) {
    struct stat status {};
    if (lstat(from, &status) != 0) {
        return errno;
    }
    if (!S_ISDIR(status.st_mode) && link(from, to) == 0) {
        return errorOf(unlink(from));
    }
    if (!S_ISDIR(status.st_mode) && errno != EPERM && errno != EOPNOTSUPP) {
        return errno;
    }
    if (lstat(to, &status) == 0) {
        return EEXIST;
    }
    return errorOf(rename(from, to));
}

// The directories that the Filesystem Hierarchy Standard 3.0 has on every system, in any of their levels that
// a product could be put into.
bool belongsToSystem(std::string_view path) {
    static const std::unordered_set<std::string_view> kDirectories = {"/",
                                                                      "/bin",
                                                                      "/boot",
                                                                      "/dev",
                                                                      "/etc",
                                                                      "/etc/opt",
                                                                      "/home",
                                                                      "/lib",
                                                                      "/lib64",
                                                                      "/media",
                                                                      "/mnt",
                                                                      "/opt",
                                                                      "/proc",
                                                                      "/root",
                                                                      "/run",
                                                                      "/sbin",
                                                                      "/srv",
                                                                      "/sys",
                                                                      "/tmp",
                                                                      "/usr",
                                                                      "/usr/bin",
                                                                      "/usr/include",
                                                                      "/usr/lib",
                                                                      "/usr/libexec",
                                                                      "/usr/local",
                                                                      "/usr/local/bin",
                                                                      "/usr/local/etc",
                                                                      "/usr/local/lib",
                                                                      "/usr/local/man",
                                                                      "/usr/local/sbin",
                                                                      "/usr/sbin",
                                                                      "/usr/share",
                                                                      "/usr/src",
                                                                      "/var",
                                                                      "/var/cache",
                                                                      "/var/lib",
                                                                      "/var/log",
                                                                      "/var/opt",
                                                                      "/var/spool",
                                                                      "/var/tmp",
                                                                      "/usr/local/src",
                                                                      "/usr/local/share",
                                                                      "/usr/local/games",
                                                                      "/usr/local/include",
                                                                      "/usr/games",
                                                                      "/var/lock",
                                                                      "/var/run",
                                                                      "/var/mail"};
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return kDirectories.contains(path);
}

bool randomNumber(std::uint64_t& outNumber) {
    return retryInterrupted([&] { return getrandom(&outNumber, sizeof outNumber, 0); }) ==
           static_cast<ssize_t>(sizeof outNumber);
}

using ReleasedText = std::unique_ptr<char, decltype(&std::free)>;

// Null, with the error in errno, when there is nothing.
ReleasedText realPathOf(std::string_view path) {
    return {realpath(linuxPath(path).c_str(), nullptr), &std::free};
}

class PosixFileSystem : public FileSystem {
public:
    int open(std::string_view path, const OpenOptions& options, std::unique_ptr<File>& outFile) override;
    bool exists(std::string_view path) override;
    PathKind kindOf(std::string_view path) override;
    bool isDirectory(std::string_view path) override;
    bool isOrdinaryDirectory(std::string_view path) override;
    std::int64_t fileSize(std::string_view path) override;
    int resolveFile(std::string_view path, std::string& outPath) override;
    int linkTarget(std::string_view path, std::string& outTarget) override;
    int takeDirectoryRights(std::string_view path) override { return exists(path) ? 0 : ENOENT; }
    std::string rightsOf(std::string_view path) override { return rightsOfFile(path); }
    int removeFile(std::string_view path) override;
    int moveFile(std::string_view from, std::string_view to) override;
    int replaceFile(std::string_view from, std::string_view to) override;
    int takeFileAway(std::string_view path, std::string_view to) override {
        return PosixDirectory::takeFileAway(AT_FDCWD, linuxPath(path), linuxPath(to));
    }
    int takeDirectoryAway(std::string_view path, std::string_view to) override {
        return PosixDirectory::takeDirectoryAway(AT_FDCWD, linuxPath(path), linuxPath(to));
    }
    int createDirectory(std::string_view path) override;
    int removeDirectory(std::string_view path) override { return errorOf(rmdir(linuxPath(path).c_str())); }
    int list(std::string_view path, std::vector<DirectoryEntry>& outEntries) override;
    int openDirectory(std::string_view path, std::unique_ptr<Directory>& outDirectory) override;
    int makeExecutable(std::string_view path) override;
    bool temporaryDirectory(std::string& outPath) override;
    bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) override;
    int realPath(std::string_view path, std::string& outPath) override;
    bool isProtected(std::string_view path, Protection protection) override {
        std::string real;
        return realPath(path, real) == 0 && isProtectedPath(real, protection);
    }
    int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                               std::string& outPath) override;
    std::vector<std::string> otherPrivatePlaces() override;
    int findVolume(std::string_view path, Volume& outVolume) override {
        return volumeOf(linuxPath(path), outVolume);
    }
    int removeAtRestart(std::string_view /*path*/) override { return ENOTSUP; }
};

int PosixFileSystem::open(std::string_view path, const OpenOptions& options, std::unique_ptr<File>& outFile) {
    outFile.reset();
    int flags = 0;
    if (!accessFlag(options.access, flags)) {
        return EINVAL;
    }
    flags |= dispositionFlags(options.disposition) | O_CLOEXEC | O_NOCTTY;
    flags |= options.followLinks ? 0 : O_NOFOLLOW;
    // Whatever the user's mask lets through, nobody else may write what this program makes.
    const mode_t mode = options.disposition == Disposition::kCreatePrivate ? 0600 : 0644;
    const std::string native = linuxPath(path);
    const int descriptor = openWithoutWaiting(native.c_str(), flags, mode);
    if (descriptor < 0) {
        return errno;
    }
    auto file = std::make_unique<PosixFile>(descriptor);
    if (const int refusal = refusalOf(descriptor)) {
        return refusal;
    }
    if (options.sequential) {
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    }
    outFile = std::move(file);
    return 0;
}

bool PosixFileSystem::exists(std::string_view path) {
    struct stat status {};
    return lstat(linuxPath(path).c_str(), &status) == 0;
}

PathKind PosixFileSystem::kindOf(std::string_view path) {
    struct stat status {};
    if (lstat(linuxPath(path).c_str(), &status) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? PathKind::kNothing : PathKind::kOther;
    }
    return pathKindOf(status.st_mode);
}

bool PosixFileSystem::isDirectory(std::string_view path) {
    struct stat status {};
    return stat(linuxPath(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool PosixFileSystem::isOrdinaryDirectory(std::string_view path) {
    const std::string native = linuxPath(path);
    struct stat status {};
    return lstat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && !belongsToSystem(native);
}

std::int64_t PosixFileSystem::fileSize(std::string_view path) {
    struct stat status {};
    const bool isFile = stat(linuxPath(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
    return isFile ? status.st_size : -1;
}

int PosixFileSystem::resolveFile(std::string_view path, std::string& outPath) {
    outPath.clear();
    const ReleasedText real = realPathOf(path);
    struct stat status {};
    if (real == nullptr || stat(real.get(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? EISDIR : ENXIO;
    }
    outPath = real.get();
    return 0;
}

int PosixFileSystem::linkTarget(std::string_view path, std::string& outTarget) {
    outTarget.assign(PATH_MAX, '\0');
    const ssize_t length = readlink(linuxPath(path).data(), outTarget.data(), outTarget.size());
    const int status = length < 0 ? errno : 0;
    outTarget.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return status;
}

// A device is nobody's file.
int PosixFileSystem::removeFile(std::string_view path) {
    const std::string native = linuxPath(path);
    struct stat status {};
    if (lstat(native.c_str(), &status) == 0 && (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode))) {
        return EPERM;
    }
    return errorOf(unlink(native.c_str()));
}

int PosixFileSystem::moveFile(std::string_view from, std::string_view to) {
    const std::string nativeFrom = linuxPath(from);
    const std::string nativeTo = linuxPath(to);
    const char* const source = nativeFrom.c_str();
    const char* const target = nativeTo.c_str();
    if (renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    return errno == EINVAL || errno == ENOSYS ? moveWithoutFlags(source, target) : errno;
}

int PosixFileSystem::replaceFile(std::string_view from, std::string_view to) {
    return errorOf(rename(linuxPath(from).c_str(), linuxPath(to).c_str()));
}

// The mode is set on the directory itself, so that neither a mask nor a swap changes what gets it. A group
// that the parent hands down stays.
int PosixFileSystem::createDirectory(std::string_view path) {
    const std::string native = linuxPath(path);
    if (mkdir(native.c_str(), 0755) != 0) {
        return errno;
    }
    const Descriptor made(retryInterrupted(
        [&] { return ::open(native.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
    struct stat status {};
    if (made.isOpen() && fstat(made.get(), &status) == 0 && (status.st_mode & 0777) != 0755 &&
        status.st_uid == geteuid()) {
        fchmod(made.get(), (status.st_mode & S_ISGID) | 0755);
    }
    return 0;
}

int PosixFileSystem::list(std::string_view path, std::vector<DirectoryEntry>& outEntries) {
    outEntries.clear();
    std::unique_ptr<Directory> directory;
    const int status = PosixDirectory::open(AT_FDCWD, linuxPath(path), 0, directory);
    return status != 0 ? status : directory->list(outEntries);
}

int PosixFileSystem::openDirectory(std::string_view path, std::unique_ptr<Directory>& outDirectory) {
    std::string native = linuxPath(path);
    // A separator at the end would have the system follow a link.
    while (native.size() > 1 && native.back() == '/') {
        native.pop_back();
    }
    return PosixDirectory::open(AT_FDCWD, native, O_NOFOLLOW, outDirectory);
}

int PosixFileSystem::makeExecutable(std::string_view path) {
    OpenOptions options;
    options.followLinks = false;
    std::unique_ptr<File> file;
    const int status = open(path, options, file);
    return status != 0 ? status : file->makeExecutable();
}

bool PosixFileSystem::temporaryDirectory(std::string& outPath) {
    const char* configured = std::getenv("TMPDIR");
    outPath = configured != nullptr && *configured != '\0' ? configured : "/tmp";
    while (outPath.size() > 1 && (outPath.back() == '/' || outPath.back() == '\\')) {
        outPath.pop_back();
    }
    return true;
}

// The random part keeps others from occupying the name in advance in a directory that all may write to.
bool PosixFileSystem::temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) {
    std::string directory;
    if (number == 0 || !temporaryDirectory(directory)) {
        return false;
    }
    for (;;) {
        std::uint64_t random = 0;
        if (!randomNumber(random)) {
            return false;
        }
        char tail[64];
        std::snprintf(tail, sizeof tail, "%x-%x-%016llx.tmp", number, static_cast<unsigned>(getpid()),
                      static_cast<unsigned long long>(random));
        outPath = directory + '/' + std::string(prefix) + tail;
        if (!exists(outPath)) {
            return true;
        }
    }
}

int PosixFileSystem::realPath(std::string_view path, std::string& outPath) {
    outPath.clear();
    const ReleasedText real = realPathOf(path);
    if (real == nullptr) {
        return errno;
    }
    outPath = real.get();
    return 0;
}

int PosixFileSystem::createPrivateDirectory(std::string_view parent, std::string_view prefix,
                                            std::string& outPath) {
    outPath.clear();
    std::uint64_t random = 0;
    if (!randomNumber(random)) {
        return errno;
    }
    char tail[17];
    std::snprintf(tail, sizeof tail, "%016llx", static_cast<unsigned long long>(random));
    const std::string made = linuxPath(parent) + "/" + std::string(prefix) + tail;
    const char* const path = made.c_str();
    if (mkdir(path, 0700) != 0) {
        return errno;
    }
    // The caller's mask may have taken the rights of the owner away.
    if (chmod(path, 0700) != 0) {
        const int error = errno;
        rmdir(path);
        return error;
    }
    outPath = made;
    return 0;
}

std::vector<std::string> PosixFileSystem::otherPrivatePlaces() {
    std::vector<std::string> places = {"/var/tmp", stateDirectory(), "/run"};
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
        places.emplace_back(home);
    }
    return places;
}

}  // namespace

FileSystem& systemFileSystem() {
    static PosixFileSystem fileSystem;
    return fileSystem;
}

}  // namespace platform
