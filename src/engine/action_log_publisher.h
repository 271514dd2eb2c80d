#pragma once

#include <string>

#include "support/debug_log.h"

namespace platform {
class FileSystem;
}

// Gives the log and the backup archive of an installation their final names.
class ActionLogPublisher {
public:
    // Both outlive this object.
    ActionLogPublisher(platform::FileSystem& files, DebugLog debugLog) : files_(files), debugLog_(debugLog) {}

    // Brings the closed temporary log to `logPath` and the closed temporary archive to `backupPath`, by a
    // copy where they can't be moved; what stands there is replaced. Both stay files of this user alone: the
    // archive may hold what nobody else could read. An empty final path publishes nothing. The temporary
    // files are deleted, but one that could not be published stays, since it may hold the only copy of the
    // user's files: the console's line tells where. False when something could not be published.
    bool publish(const std::string& temporaryLog, const std::string& logPath,
                 const std::string& temporaryBackup, const std::string& backupPath);

private:
    bool publishFile(const char* what, const std::string& from, const std::string& to);
    bool copyPrivately(const std::string& from, const std::string& to);

    platform::FileSystem& files_;
    DebugLog debugLog_;
};
