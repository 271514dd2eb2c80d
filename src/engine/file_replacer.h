#pragma once

#include <cstdint>
#include <string_view>

#include "engine/file_in_use.h"
#include "support/debug_log.h"

class InstallerUI;

// Writes whole files to the disk, over what is there.
class FileReplacer {
public:
    // How long a program that holds a file is waited for.
    static constexpr std::uint32_t kProgramEndMilliseconds = 2000;

    // From level 3 of the log on each file is logged.
    FileReplacer(platform::FileSystem& files, SystemOperations& system, DebugLog debugLog)
        : files_(files), inUse_(files, system), debugLog_(debugLog) {}

    // Where an existing file can't be opened, the program that runs from it is stopped. True when every byte
    // has reached the file and it could be closed; otherwise the file may hold a part. `ui` may be null.
    bool write(InstallerUI* ui, const char* path, bool exists, std::string_view content);

private:
    int open(class PFileStream& file, InstallerUI* ui, const char* path, bool exists);

    platform::FileSystem& files_;
    FileInUse inUse_;
    DebugLog debugLog_;
};
