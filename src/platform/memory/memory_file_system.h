#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

// A file system in memory that records what is done to it and fails where it is asked to. `/` and `\` are the
// same, `.` and `..` and repeated separators are resolved, names keep their case and are found in any case.
// A leading drive is a directory that always exists, and so is "/"; a relative path counts from "/".
// Usable by any thread.
class MemoryFileSystem : public platform::FileSystem {
public:
    // The statuses of its own failures.
    enum Status : int {
        kOk = 0,
        kNotFound = 2,
        kAccessDenied = 5,
        kBadHandle = 6,
        kExists = 80,
        kOtherVolume = 17,
        kDiskFull = 112,
        kNotEmpty = 145,
        kIsDirectory = 267,
    };

    enum class Operation {
        kOpen,
        kRead,
        kWrite,
        kSeek,
        kFlush,
        kClose,
        kTruncate,
        kRemoveFile,   // taking it away is one, too
        kMoveFile,     // by its source; taking a file or a directory away as well
        kReplaceFile,  // by its source
        kCreateDirectory,
        kRemoveDirectory,
        kList,
        kMakeExecutable,
        kCopyRights,  // by its target, the open file
        kSetRights,   // by the open file
        kTakeDirectoryRights,
    };

    MemoryFileSystem();
    ~MemoryFileSystem() override;

    // Holds from now on what the other one holds, with all names and rights, volumes and protections. Faults,
    // records and open files stay behind.
    void becomeCopyOf(const MemoryFileSystem& other);

    // Set-up and inspection; none of it is recorded, fails by injection or counts against the disk's space.
    // Missing directories are made. A file that is there keeps its rights and gets a content of its own: its
    // further names keep the old one.
    void addFile(std::string_view path, std::string_view content);
    void addDirectory(std::string_view path);
    // A directory with a mark of the system, which isOrdinaryDirectory sees.
    void addMarkedDirectory(std::string_view path);
    // A relative target counts from the link's directory.
    void addLink(std::string_view path, std::string_view target);
    void addProgram(std::string_view path, std::string_view content);  // a file with the mark of one
    // One more name of the file, which must be there.
    void addHardLink(std::string_view path, std::string_view file);
    // Neither a file nor a directory; opening it fails at once.
    void addDevice(std::string_view path);
    // An entry whose name no path can mean. list() leaves it out, it can't be reached, and it keeps its
    // directory from being empty.
    void addUnnameable(std::string_view directory, std::string_view name = "..\\..");
    void makePrivate(std::string_view path);    // of a file that is there
    bool hasFile(std::string_view path) const;  // a file, not a link or a directory
    bool hasDirectory(std::string_view path) const;
    std::string content(std::string_view path) const;     // empty when there is no such file
    std::string linkTarget(std::string_view path) const;  // resolved; empty when there is no link
    bool isExecutable(std::string_view path) const;
    bool isPrivate(std::string_view path) const;  // of this user alone
    // Made with the rights that the process's mask left, and never given others.
    bool isMasked(std::string_view path) const;
    // Had takeDirectoryRights, and still is that file.
    bool hasDirectoryRights(std::string_view path) const;
    // The full paths of all files and links in their own case with `/`, in the order of their lower case.
    std::vector<std::string> allFiles() const;
    // All that is there, by its path in its own case: "directory", "file: content", "file program
    // private: content", "link to /a", "device".
    std::map<std::string, std::string> everything() const;
    int openFileCount() const;

    // The n-th (from 1) operation of this kind from now on fails with `status`, at this path or, with an
    // empty path, at any. Each call adds one failure. A failing write moves nothing.
    void failAt(Operation operation, std::string_view path, int n, int status = kAccessDenied);
    // As failAt, for the n-th and all later ones.
    void failFrom(Operation operation, std::string_view path, int n, int status = kAccessDenied);
    // That many more bytes can be written, overwriting included; the rest fails with kDiskFull after writing
    // what fits. Negative: without limit.
    void setFreeSpace(std::int64_t bytes);
    // What is at this path and below is on a volume of its own: nothing is moved over its border.
    void setVolume(std::string_view path);
    // What findVolume says to be free on the volume of this path, whatever can be written there; negative: it
    // can't be found out. At first there is plenty everywhere. A disk that setFreeSpace limits is one that
    // others fill meanwhile.
    void reportFreeSpace(std::string_view path, std::int64_t bytes);
    // What is at this path and below can be read but not written, made, moved or removed.
    void setReadOnly(std::string_view path, int status = kAccessDenied);
    // The status that setReadOnly gave for it; kOk where there is none.
    int refusalOfChange(std::string_view path) const;
    // The path as it is kept: "C:/a/b" or "/a/b"; the roots are "C:" and "".
    static std::string resolvedPath(std::string_view path);
    void clearFaults();
    // Before the n-th (from 1) operation of this kind at this path from now on, `action` runs, once: what
    // somebody else does in the meantime.
    void runBefore(Operation operation, std::string_view path, int n, std::function<void()> action);

    // Called before each call that may change something, an opening included.
    void watchChanges(std::function<void()> watcher);

    // What was done, in order, with the resolved path: "open /a/b", "close /a/b", "truncate /a/b",
    // "removeFile /a", "moveFile /a -> /b", "replaceFile /a -> /b", "createDirectory /a", "removeDirectory
    // /a", "takeAway /a -> /b", "list /a", "makeExecutable /a", "copyRights /a -> /b", "takeDirectoryRights
    // /a", "flush /a". Those on an open directory are recorded like the others. Failed calls are recorded as
    // well. Reads, writes and seeks are counted only.
    std::vector<std::string> operations() const;
    bool didOperation(std::string_view text) const;
    void clearOperations();
    int count(Operation operation) const;

    void setTemporaryDirectory(std::string_view path);  // makes it; empty: there is none
    void setOtherPrivatePlaces(
        std::vector<std::string> places);  // makes none of them; at first there are none
    // Others can change what is at this path and below.
    void setUnprotected(std::string_view path);
    std::vector<std::string> removedAtRestart() const;  // what was asked for, resolved and in order

    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override;
    bool exists(std::string_view path) override;
    platform::PathKind kindOf(std::string_view path) override;
    bool isDirectory(std::string_view path) override;
    bool isOrdinaryDirectory(std::string_view path) override;
    std::int64_t fileSize(std::string_view path) override;
    int resolveFile(std::string_view path, std::string& outPath) override;
    int linkTarget(std::string_view path, std::string& outTarget) override;
    int takeDirectoryRights(std::string_view path) override;
    std::string rightsOf(std::string_view path) override;
    int removeFile(std::string_view path) override;
    int moveFile(std::string_view from, std::string_view to) override;
    int replaceFile(std::string_view from, std::string_view to) override;
    int takeFileAway(std::string_view path, std::string_view to) override;
    int takeDirectoryAway(std::string_view path, std::string_view to) override;
    int createDirectory(std::string_view path) override;
    int removeDirectory(std::string_view path) override;
    int list(std::string_view path, std::vector<platform::DirectoryEntry>& outEntries) override;
    int openDirectory(std::string_view path, std::unique_ptr<platform::Directory>& outDirectory) override;
    int makeExecutable(std::string_view path) override;
    bool temporaryDirectory(std::string& outPath) override;
    bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) override;
    int realPath(std::string_view path, std::string& outPath) override;
    bool isProtected(std::string_view path, platform::Protection protection) override;
    int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                               std::string& outPath) override;
    std::vector<std::string> otherPrivatePlaces() override;
    int findVolume(std::string_view path, platform::Volume& outVolume) override;
    int removeAtRestart(std::string_view path) override;

private:
    struct Node;
    struct Fault;
    class OpenFile;
    class OpenDirectory;
    struct Event;
    using NodePtr = std::shared_ptr<Node>;

    int listDisk(const std::string& path, std::vector<platform::DiskEntry>& outEntries);
    int begin(Operation operation, const std::string& path, const std::string& text);
    int readOnlyStatus(const std::string& path) const;
    NodePtr find(const std::string& path) const;
    NodePtr findTarget(const std::string& path) const;
    NodePtr add(const std::string& path, int kind);
    int parentStatus(const std::string& path) const;
    int openNode(const std::string& path, const platform::OpenOptions& options, NodePtr& outNode);
    int relocate(const std::string& from, const std::string& to, bool replace);
    int place(const NodePtr& node, const std::string& from, const std::string& to);
    std::string volumeOf(const std::string& path) const;
    bool isPlaceOf(const NodePtr& node) const;
    void runActions(Operation operation, const std::string& path);
    bool hasChildren(const std::string& path) const;
    std::string realNameOf(const std::string& path, int links = 0) const;

    mutable std::recursive_mutex mutex_;    // what runBefore runs calls in again
    std::map<std::string, NodePtr> nodes_;  // by the resolved path in lower case
    std::vector<Fault> faults_;
    std::vector<Event> events_;
    std::function<void()> watcher_;
    std::map<std::string, int> readOnly_;
    std::int64_t freeSpace_ = -1;
    std::vector<std::string> operations_;
    std::map<Operation, int> counts_;
    std::string temporaryDirectory_ = "/tmp";
    std::vector<std::string> otherPrivatePlaces_;
    std::set<std::string> unprotected_;
    std::set<std::string> volumes_;
    std::map<std::string, std::int64_t> reportedSpace_;  // by volume
    std::vector<std::string> removedAtRestart_;
    int privateDirectories_ = 0;
    int openFiles_ = 0;
};
