#include "engine/action_log_publisher.h"

#include "platform/file_system.h"
#include "support/p_console.h"
#include "support/utilities.h"

bool ActionLogPublisher::publish(const std::string& temporaryLog, const std::string& logPath,
                                 const std::string& temporaryBackup, const std::string& backupPath) {
    const bool logPublished = publishLog(temporaryLog, logPath);
    const bool backupPublished = publishBackup(temporaryBackup, backupPath);
    return logPublished && backupPublished;
}

bool ActionLogPublisher::publishLog(const std::string& from, const std::string& to) {
    if (!to.empty()) {
        if (files_.replaceFile(from.c_str(), to.c_str()) == 0) {
            return true;
        }
        if (!OUtils::copyFile(from.c_str(), to.c_str(), files_)) {
            console_->print("ERROR: The install log could not be written to %s; it stays at %s", to.c_str(),
                            from.c_str());
            return false;
        }
    }
    files_.removeFile(from.c_str());
    return true;
}

bool ActionLogPublisher::publishBackup(const std::string& from, const std::string& to) {
    if (!to.empty() && !OUtils::copyFile(from.c_str(), to.c_str(), files_)) {
        console_->print("ERROR: The backup file could not be written to %s; it stays at %s", to.c_str(),
                        from.c_str());
        return false;
    }
    files_.removeFile(from.c_str());
    return true;
}
