#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "engine/file_in_use.h"
#include "platform/file_system.h"
#include "support/debug_log.h"
#include "support/md5.h"

// What is on the disk where a file is to go.
struct FileOnDisk {
    bool exists = false;  // it could be opened for reading
    bool differs = true;  // or there is nothing to compare
    int status = 0;       // why it couldn't be opened: the system's error number
};

// Compares whole files on the disk with new content, and replaces them by it.
class DiskFiles {
public:
    // Files of this size and above always count as different.
    static constexpr std::int64_t kSizeLimit = 0x40000000;

    // From level 3 of the log on each written file is logged. The others outlive this object. Within a large
    // file the front end gets time for its events.
    DiskFiles(platform::FileSystem& files, SystemOperations& system, Report& report, DebugLog debugLog)
        : files_(files), report_(report), inUse_(files, system, report), debugLog_(debugLog) {}

    // The content is known by its size and digest. Holds nothing but a block of the file in memory. A link in
    // the place of the file isn't followed: it exists and differs.
    FileOnDisk compare(std::string_view path, std::int64_t contentSize, const Md5Digest& digest);

    // Puts a whole file in the place of what is there, as a ReplacingFile. Where a file that `exists` can't
    // be replaced because it is in use, the program that runs from it is stopped. True when every byte has
    // reached the disk's file system and the file is in its place; otherwise what was there is as it was,
    // unless it was deleted as a program in use.
    bool write(std::string_view path, bool exists, std::string_view content,
               platform::FileRights rights = platform::FileRights::kPlain);

    // Why the last write failed: a status of the system, or -1 when something else than a file is in its
    // place. 0 when nothing failed, or when it was taken already.
    int takeFailure() { return std::exchange(failure_, 0); }

private:
    bool digestOf(class PFileStream& file, std::int64_t size, Md5Digest& out);
    int writeContent(PFileStream& stream, std::string_view content, std::uint32_t& outWritten);
    int putInPlace(class ReplacingFile& file, std::string_view path, bool exists);

    platform::FileSystem& files_;
    Report& report_;
    FileInUse inUse_;
    DebugLog debugLog_;
    int failure_ = 0;
};
