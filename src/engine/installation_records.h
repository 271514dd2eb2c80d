#pragma once

#include <string>

#include "package/backup_file.h"
#include "support/debug_log.h"

class ActionLogWriter;
class LoggedVariables;
class ProductDescription;
class SystemOperations;

// The action log and the backup archive of one installation, from their temporary names to their final ones.
class InstallationRecords {
public:
    struct Parts {
        ActionLogWriter& log;
        const LoggedVariables& variables;
        const ProductDescription& product;
        SystemOperations& system;
        platform::FileSystem& files;
    };

    InstallationRecords(Parts parts, DebugLog debugLog);

    // Opens both under temporary names and writes the log's head. False when that can't be done, which is
    // logged; nothing is left then.
    bool open();
    BackupFile& backup() { return backup_; }
    // Closes both and gives them their final names. False when something didn't reach the disk, which is
    // logged.
    bool publish();

private:
    bool openLog();
    bool openBackup();
    bool closeAll();

    Parts parts_;
    DebugLog debugLog_;
    BackupFile backup_;
    std::string temporaryLog_;
    std::string temporaryBackup_;
};
