#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// The file operations of the operating system. Paths are UTF-8 and may mix `/` and `\`; on Linux each call
// turns `\` into `/` and drops a leading drive ("C:"). A status is 0 or the system's own error number
// (errno, GetLastError): above this layer it is only compared with 0 or printed.
namespace platform {

enum Access : std::uint32_t { kRead = 1, kWrite = 2 };

// What others may do with the file while it is open. Enforced on Windows only.
enum Share : std::uint32_t { kShareNone = 0, kShareRead = 1, kShareWrite = 2, kShareDelete = 4 };

enum class Disposition {
    kOpenExisting,  // fails when there is no file
    kOpenOrCreate,  // keeps the content
    kCreateAlways,  // empties what is there
    kCreateNew,     // fails when there is anything of that name, a link included
    // As kCreateNew, and readable and writable by this user alone; on Windows by the administrators and the
    // system, and nobody else, when this process has administrator's rights.
    kCreatePrivate,
};

struct OpenOptions {
    std::uint32_t access = kRead;
    std::uint32_t share = kShareRead;
    Disposition disposition = Disposition::kOpenExisting;
    bool sequential = false;  // a hint: the file will be read from front to back
    bool followLinks = true;  // otherwise a link in the place of the file can't be opened
};

// The rights of a new file, exact: what a user's mask would take away or leave doesn't count. On Windows a
// file gets the rights of its directory, unless it is made private.
enum class FileRights {
    kPlain,    // 0644
    kProgram,  // 0755
    kPrivate,  // 0600
};

enum class Origin { kStart, kCurrent, kEnd };

// An open file; closed by its destructor. Used by one thread at a time.
class File {
public:
    virtual ~File() = default;

    // `outDone` gets the bytes moved, also after a failure. Fewer bytes than asked for with status 0 is the
    // file's end.
    // A status of 0 from write means that all bytes were handed to the system.
    virtual int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) = 0;
    virtual int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) = 0;
    virtual int seek(std::int64_t distance, Origin origin, std::int64_t& outPosition) = 0;
    virtual std::int64_t size() = 0;  // in bytes; -1 on failure
    virtual int truncateHere() = 0;   // the file ends at the present position
    virtual int flush() = 0;
    // The rights of the open file, whatever its path leads to by now.
    virtual int setRights(FileRights rights) = 0;
    // Gives the open file, made with kCreatePrivate, the rights of the plain file at `path`: owner, mode and
    // access list; on Windows access list and attributes. Fails for a link and for whatever else isn't a
    // plain file, and for a file that this user may not write; `this` may then have some of the rights.
    virtual int takeRightsOf(std::string_view path) = 0;
    // Marks the open file as a program, as FileSystem::makeExecutable does.
    virtual int makeExecutable() = 0;
    // Reports what the system only reports at the end (a full disk, say). The object is closed in any case.
    virtual int close() = 0;
};

// A name in a directory that a path can mean: never "." or "..", never with a separator, a zero byte or, on
// Windows, a colon. Entries with other names, which a disk can hold, are not listed.
struct DirectoryEntry {
    std::string name;          // without the directory
    bool isDirectory = false;  // a link to a directory isn't one: walks must not leave the tree
};

// What a path names, without following a link.
enum class PathKind {
    kNothing,
    kFile,
    kDirectory,
    kLink,
    kOther,  // a device, a pipe and the like, and what the system doesn't let this user look at
};

// An entry of a directory as the disk has it, whatever its name: all but "." and "..".
struct DiskEntry {
    std::string name;  // on Windows with U+FFFD for what can't be UTF-8
    PathKind kind = PathKind::kNothing;
    std::int64_t size = -1;  // of a file, in bytes; otherwise -1
    bool isProgram = false;  // a file that its owner may run; never on Windows, which has no such mark
    bool isNameable = true;  // otherwise it would not be in a list of DirectoryEntry
};

// Who, at most, can change a file.
enum class Protection {
    kAdministrators,
    kUserAndAdministrators,  // this process's user, and administrators
};

// An open directory. Its operations work on the entries of this very directory, even if it is moved or
// something else takes its path. A name that a path can't mean is refused. Used by one thread at a time.
class Directory {
public:
    virtual ~Directory() = default;

    // The entries, in no certain order; `outEntries` is emptied first.
    virtual int list(std::vector<DirectoryEntry>& outEntries) = 0;
    // The same with all that is there. An entry that goes meanwhile is of the kind kNothing.
    virtual int listDisk(std::vector<DiskEntry>& outEntries) = 0;
    // `outDirectory` is null after a failure. A link isn't opened.
    virtual int openDirectory(std::string_view name, std::unique_ptr<Directory>& outDirectory) = 0;
    virtual int removeFile(std::string_view name) = 0;       // of a link, the link; no device
    virtual int removeDirectory(std::string_view name) = 0;  // an empty one, and no link
    // Opens a plain file, and no link, for reading while others do what they like with it. `outFile` is null
    // after a failure.
    virtual int openFile(std::string_view name, std::unique_ptr<File>& outFile) = 0;
    // As FileSystem::takeFileAway and takeDirectoryAway.
    virtual int takeFileAway(std::string_view name, std::string_view to) = 0;
    virtual int takeDirectoryAway(std::string_view name, std::string_view to) = 0;
};

// Where files get their space from.
struct Volume {
    std::string name;       // for the user: where it is mounted, or its root
    std::string key;        // the same for all paths on it, another one for every other volume
    std::int64_t free = 0;  // bytes that this process may still use there
};

class FileSystem {
public:
    virtual ~FileSystem() = default;

    // `outFile` is null after a failure. A directory can't be opened.
    virtual int open(std::string_view path, const OpenOptions& options, std::unique_ptr<File>& outFile) = 0;

    virtual bool exists(std::string_view path) = 0;  // of any kind, a link without a target included
    virtual PathKind kindOf(std::string_view path) = 0;
    virtual bool isDirectory(std::string_view path) = 0;  // follows links
    // A directory, and no link to one, that carries no mark of the system: on Windows the attributes
    // read-only, hidden and system; on Linux the directories that the Filesystem Hierarchy Standard 3.0
    // names belong to the system (`/opt`, `/usr/local/bin` ...). What empties it may take such a one away.
    virtual bool isOrdinaryDirectory(std::string_view path) = 0;
    // From the directory entry, without opening; -1 when there is none or it is a directory.
    virtual std::int64_t fileSize(std::string_view path) = 0;

    // The path of the plain file that the path leads to through links. Fails when there is none, and for
    // directories, devices, pipes and the like.
    virtual int resolveFile(std::string_view path, std::string& outPath) = 0;

    // The text of a symbolic link, as it was made. Fails for everything else; on Windows always. `outTarget`
    // is empty after a failure.
    virtual int linkTarget(std::string_view path, std::string& outTarget) = 0;

    // Windows: a private file gets the rights that its directory hands down, so that whoever looks after the
    // directory can read it. Linux: nothing, a private file stays so.
    virtual int takeDirectoryRights(std::string_view path) = 0;

    // All that File::takeRightsOf takes from a plain file, in a form that only this system knows: where it is
    // the same, so are the rights. Empty where takeRightsOf would fail.
    virtual std::string rightsOf(std::string_view path) = 0;

    virtual int removeFile(std::string_view path) = 0;
    // A rename on one volume; fails when `to` exists and across volumes.
    virtual int moveFile(std::string_view from, std::string_view to) = 0;
    // As moveFile, but takes the place of an existing file in one step.
    virtual int replaceFile(std::string_view from, std::string_view to) = 0;
    // As removeFile and removeDirectory, and they fail where those fail; but what goes isn't lost, it gets
    // the path `to` with all that it is: content, rights, times. Nothing may be there. Fail across volumes;
    // after a failure everything is as it was.
    virtual int takeFileAway(std::string_view path, std::string_view to) = 0;
    virtual int takeDirectoryAway(std::string_view path, std::string_view to) = 0;
    // One level; 0755, whatever the user's mask says.
    virtual int createDirectory(std::string_view path) = 0;
    virtual int removeDirectory(std::string_view path) = 0;  // an empty one
    // The entries, in no certain order; `outEntries` is emptied first.
    virtual int list(std::string_view path, std::vector<DirectoryEntry>& outEntries) = 0;
    // `outDirectory` is null after a failure. A path that ends in a link isn't opened; links further up are
    // followed.
    virtual int openDirectory(std::string_view path, std::unique_ptr<Directory>& outDirectory) = 0;
    // Marks a plain file as a program (Linux: the execute bits that match its read bits; Windows: nothing).
    // Fails for a link, and for a file that lacks such bits and has other names: they may be somebody else's.
    virtual int makeExecutable(std::string_view path) = 0;

    // The directory for temporary files without a trailing separator. False on failure.
    virtual bool temporaryDirectory(std::string& outPath) = 0;
    // Forms the path of a temporary file from a prefix and a non-zero number; the file isn't created. Nothing
    // of that name exists, but that may change before the caller creates it: kCreateNew or kCreatePrivate
    // shows that, and another number gives another name. On Linux each call does. False on failure.
    virtual bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) = 0;

    // The path as the system knows it: absolute, without links and short names, names in their own case.
    // Fails when there is nothing; `outPath` is empty then.
    virtual int realPath(std::string_view path, std::string& outPath) = 0;
    // True when nobody but those can change the file, add anything to its directory, or put something else in
    // the place of the file or of a directory on its real path. False when that can't be found out.
    virtual bool isProtected(std::string_view path, Protection protection) = 0;
    // A new directory below `parent` that only those can enter who can read a file of kCreatePrivate. Its
    // name is the prefix and a part that nobody can guess. `outPath` is empty after a failure.
    virtual int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                                       std::string& outPath) = 0;
    // Where private directories may be made if the temporary directory is of no use, the preferred first. Not
    // each of them has to exist.
    virtual std::vector<std::string> otherPrivatePlaces() = 0;
    // The volume of what is at the path, or of the nearest directory above it that is there; links are
    // followed. Fails when the system can't say how much is free; `outVolume` is empty then.
    virtual int findVolume(std::string_view path, Volume& outVolume) = 0;
    // Has the system remove a file or an empty directory when it starts the next time. For what can't be
    // removed while it is in use, which only Windows knows; fails elsewhere.
    virtual int removeAtRestart(std::string_view path) = 0;
};

// The machine's file system. One object for the whole process, usable by any thread.
FileSystem& systemFileSystem();

}  // namespace platform
