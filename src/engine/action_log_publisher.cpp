#include "engine/action_log_publisher.h"

#include "platform/file_system.h"
#include "support/debug_log.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"

bool ActionLogPublisher::publish(const std::string& temporaryLog, const std::string& logPath,
                                 const std::string& temporaryBackup, const std::string& backupPath) {
    const bool logPublished = publishFile("install log", temporaryLog, logPath);
    const bool backupPublished = publishFile("backup file", temporaryBackup, backupPath);
    return logPublished && backupPublished;
}

bool ActionLogPublisher::publishFile(const char* what, const std::string& from, const std::string& to) {
    if (!to.empty()) {
        if (files_.replaceFile(from.c_str(), to.c_str()) == 0) {
            return true;
        }
        if (!copyPrivately(from, to)) {
            debugLog_.print("ERROR: The %s could not be written to %s; it stays at %s", what, to.c_str(),
                            from.c_str());
            return false;
        }
    }
    files_.removeFile(from.c_str());
    return true;
}

// The copy empties what it finds and leaves its rights as they are.
bool ActionLogPublisher::copyPrivately(const std::string& from, const std::string& to) {
    PFileStream target(files_);
    return target.openPrivate(to.c_str()) == 0 && target.close() == 0 &&
           OUtils::copyFile(from.c_str(), to.c_str(), files_);
}
