#pragma once

#include <string>
#include <string_view>

#include "engine/action_log_writer.h"
#include "engine/engine_parts.h"
#include "engine/removal_backups.h"
#include "support/p_file_console.h"

class Report;
class Uninstallation;

// Puts the machine back after an installation that failed: the new files go, and the installations come back
// that were removed for it. What it works from is looked at first: if any of it can't be read, nothing is
// touched, which would leave a mixture of two versions. After that no failure stops it. Each one is reported,
// and what isn't back by the end is tried once more by the next run.
class Revert {
public:
    // All of them are borrowed and outlive this object.
    Revert(const EngineParts& parts, RemovalBackups& backups);

    // Undoes what this session installed, by the log that it published (`publishedLog`; empty when there is
    // none), and then brings back what was removed for it. The result is that of the pages: true only when
    // the undo ran and left nothing, and no installation had to come back. So it is false after every
    // upgrade, the best one included; the descriptions don't ask.
    bool revertInstallation(const std::string& publishedLog, Uninstallation& undo, Report& report);

    // Brings back what was removed. False as soon as one installation came back, as above.
    bool revertUninstallation(Report& report);

    // Whether the last of these calls left nothing of what was installed, and brought back all that was
    // removed.
    bool tookAllBack() const { return tookAllBack_; }

private:
    bool isLogReadable(const std::string& publishedLog, Report& report);
    bool canBringBack(Report& report);
    bool isReadable(const std::string& path, Report& report);
    bool putOff(Report& report);
    bool undoInstallation(const std::string& publishedLog, Uninstallation& undo, Report& report);
    bool copyLog(const std::string& copy);
    std::string ownFile(std::string_view name);
    void takeOut(const std::string& archive);
    void noteUndo(const std::string& copy, const std::string& publishedLog);
    void sayWhatIsLeft(const std::string& publishedLog, const std::string& copy, bool isCopied,
                       Report& report);
    std::string placeOfCopy();
    bool walk(Uninstallation& undo, Report& report);
    bool hasBackups() const { return backups_.isOpen() || !backups_.uninstallBackups.empty(); }
    void clearRecords(const std::string& log, const std::string& archive, Report* rest);
    void copyBack(Report& report);
    bool unpack(const UninstallBackup& backup, Report& report);
    int makeDirectories(const std::string& listPath, Report& report);

    EngineParts parts_;
    RemovalBackups& backups_;
    // Never open: nothing of a revert is recorded.
    PFileConsole logFile_;
    ActionLogWriter log_;
    // The published log: the walk deletes it as a file of the product, and must not fail halfway through it.
    std::string undoneLog_;
    bool isAnyBack_ = false;
    bool areAllBack_ = false;
    bool tookAllBack_ = false;
};
