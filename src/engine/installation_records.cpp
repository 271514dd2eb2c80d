#include "engine/installation_records.h"

#include "base/fixed_text.h"
#include "contracts/system_operations.h"
#include "description/product_description.h"
#include "engine/action_log_publisher.h"
#include "engine/action_log_writer.h"
#include "engine/logged_variables.h"
#include "platform/file_system.h"
#include "support/debug_log.h"

namespace {

constexpr int kPathCapacity = static_cast<int>(PathText::capacity());

// Empty when the system refuses.
std::string temporaryName(SystemOperations& system) {
    return system.temporaryFileName().value_or("");
}

}  // namespace

InstallationRecords::InstallationRecords(Parts parts, DebugLog debugLog)
    : parts_(parts), debugLog_(debugLog), backup_(parts.files) {}

bool InstallationRecords::open() {
    if (!openLog()) {
        debugLog_.print("ERROR: Obtaining temp filename for install temp log!");
        return false;
    }
    if (!openBackup()) {
        debugLog_.print("ERROR: Obtaining temp filename for install temp backup!");
        parts_.log.close();
        parts_.files.removeFile(temporaryLog_.c_str());
        return false;
    }
    PathText descriptionPath;
    PathText backupPath;
    parts_.product.getUninstallXmlFile(descriptionPath.data(), kPathCapacity);
    parts_.product.getInstallBackupFile(backupPath.data(), kPathCapacity);
    parts_.log.writeHeader(descriptionPath.view(), backupPath.view());
    parts_.log.writeVariables(parts_.variables.collect());
    return true;
}

bool InstallationRecords::openLog() {
    temporaryLog_ = temporaryName(parts_.system);
    return !temporaryLog_.empty() && parts_.log.openNew(temporaryLog_.c_str()) == 0;
}

bool InstallationRecords::openBackup() {
    temporaryBackup_ = temporaryName(parts_.system);
    return !temporaryBackup_.empty() && backup_.openForWriting(temporaryBackup_.c_str()) == 0;
}

bool InstallationRecords::closeAll() {
    const bool logWritten = parts_.log.close();
    if (!logWritten) {
        debugLog_.print("ERROR: The install log could not be written completely");
    }
    const bool backupWritten = backup_.close() == 0;
    if (!backupWritten) {
        debugLog_.print("ERROR: The backup file could not be written completely");
    }
    return logWritten && backupWritten;
}

bool InstallationRecords::publish() {
    const bool written = closeAll();
    PathText logPath;
    PathText backupPath;
    parts_.product.getInstallLogFile(logPath.data(), kPathCapacity);
    parts_.product.getInstallBackupFile(backupPath.data(), kPathCapacity);
    const bool published = ActionLogPublisher(parts_.files, debugLog_)
                               .publish(temporaryLog_, logPath.c_str(), temporaryBackup_, backupPath.c_str());
    return written && published;
}
