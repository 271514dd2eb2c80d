#pragma once

#include <string>

#include "engine/session_log.h"

namespace platform {
class FileSystem;
}

// Gives the log and the backup archive of an installation their final names.
class ActionLogPublisher {
public:
    // Both outlive this object.
    ActionLogPublisher(platform::FileSystem& files, SessionLog console) : files_(files), console_(console) {}

    // Moves the closed temporary log to `logPath`, by a copy where it can't be moved, and copies the closed
    // temporary archive to `backupPath`; what stands there is replaced. An empty final path publishes
    // nothing. The temporary files are deleted, but one that could not be published stays, since it may hold
    // the only copy of the user's files: the console's line tells where. False when something could not be
    // published.
    bool publish(const std::string& temporaryLog, const std::string& logPath,
                 const std::string& temporaryBackup, const std::string& backupPath);

private:
    bool publishLog(const std::string& from, const std::string& to);
    bool publishBackup(const std::string& from, const std::string& to);

    platform::FileSystem& files_;
    SessionLog console_;
};
