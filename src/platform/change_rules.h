#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

// What a machine's file system says to a change that isn't made: its numbers for refusals, whether this user
// may make the change, how it reads paths and compares names. For whoever imitates the file system.
namespace platform {

enum class Refusal {
    kMissing,
    kMissingDirectory,   // of the path, on the way to its end
    kNoDirectory,        // something else is in the place of a directory on the way
    kExists,             // to making a new file
    kTaken,              // to moving or making a directory to where something is
    kOpensDirectory,     // to opening it as a file
    kIsDirectory,        // to removing or moving it as a file
    kReplacesDirectory,  // to putting a file in its place
    kNotADirectory,
    kOpensNoDirectory,   // to opening something else as a directory
    kResolvesDirectory,  // to finding the plain file that is meant
    kNotEmpty,
    kRoot,  // to removing it
    kOtherVolume,
    kOpensLink,  // to opening it where links aren't followed
    kNoLink,     // to asking for its text
    kTooManyLinks,
    kNoProgram,  // a directory that is to be marked as one
    kDevice,
    kDenied,
    kNotOpenFor,  // to reading, or to writing, with a file that was opened for the other alone
    kClosed,
    kBeforeStart,  // to a position below 0
    kBadName,
    kBadAccess,  // to opening neither for reading nor for writing
    kDiskFull,
    kNotKept,    // to reading content that was too large to be kept
    kAtRestart,  // to removing at the next start; 0 where the system does that
    kLinking,    // to making a symbolic link; 0 where the system does that
};

enum class Intent {
    kWriteFile,    // of the content of a file that is there
    kMakeEntry,    // in the path's directory
    kMoveEntry,    // from its directory
    kRemoveEntry,  // for good
};

// An absolute path in its parts, without empty ones and ".". A part ".." is left only where the system looks
// at it after links.
struct PathParts {
    std::string root;  // as joinedPath takes it
    std::vector<std::string> parts;
};

class ChangeRules {
public:
    virtual ~ChangeRules() = default;

    virtual int statusOf(Refusal refusal) const = 0;
    // 0, or the status with which the machine would refuse. Nothing is changed for that, not even a time. It
    // can't foresee everything: what is in use on Windows may end, and a disk may fail.
    virtual int wouldRefuse(Intent intent, std::string_view path) = 0;

    // 0, or a status: the path is empty, or no file can have it.
    virtual int partsOf(std::string_view path, PathParts& outParts) = 0;
    // Between the names of a path; the root may end in one.
    virtual char separator() const = 0;
    // The same for all spellings of a name that mean one entry.
    virtual std::string nameKey(std::string_view name) const = 0;
    // False: names in any case mean one entry.
    virtual bool distinguishesCase() const = 0;
    // What Directory takes as the name of an entry.
    virtual bool isPlainName(std::string_view name) const = 0;
    // Whether moveFile takes directories, too.
    virtual bool movesDirectories() const = 0;

    // The text of FileSystem::rightsOf for new files, and what becomes of one.
    virtual std::string rightsOfNew(FileRights rights) const = 0;
    virtual std::string rightsOfUnset() const = 0;  // made, and not given any
    virtual std::string asProgram(const std::string& rights) const = 0;
    virtual bool isProgram(const std::string& rights) const = 0;
    // What takeDirectoryRights makes of them.
    virtual std::string withDirectoryRights(const std::string& rights) const = 0;
};

// Of the machine itself. One object for the whole process, usable by any thread.
ChangeRules& systemChangeRules();

inline std::string joinedPath(const ChangeRules& rules, std::string_view directory, std::string_view name) {
    std::string path(directory);
    if (path.empty() || path.back() != rules.separator()) {
        path += rules.separator();
    }
    return path.append(name);
}

}  // namespace platform
