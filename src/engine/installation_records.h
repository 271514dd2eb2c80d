#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/action_log_writer.h"
#include "engine/engine_parts.h"
#include "package/backup_file.h"

// The variables that an action log keeps: those of the store, in its order, that aren't excluded from logs.
// The texts are the store's and good until it changes.
std::vector<LoggedVariable> loggedVariables(const ProductModel& model);

// The action log and the backup archive of one installation, from their temporary names to their final ones.
// Both are files of this user alone: they may hold what nobody else could read.
class InstallationRecords {
public:
    // All of them outlive this object.
    InstallationRecords(const EngineParts& parts, ActionLogWriter& log, BackupFile& archive)
        : parts_(parts), log_(log), archive_(archive) {}

    // Opens both under temporary names and writes the log's head. False when that can't be done, which is
    // logged; nothing is left then.
    bool open();
    // Closes both and brings them to the paths that the description gives, over what is there; without such a
    // path the file is deleted. False when something didn't reach the disk, which is logged. A file that
    // could not be published stays under its temporary name, since it may hold the only copy of the user's
    // files; the log says where.
    bool publish();

private:
    bool openLog();
    bool openArchive();
    bool closeAll();
    bool publishFile(const char* what, const std::string& from, const std::string& to);
    void handOver(const char* what, const std::string& path);
    bool copyPrivately(const std::string& from, const std::string& to);

    EngineParts parts_;
    ActionLogWriter& log_;
    BackupFile& archive_;
    std::string temporaryLog_;
    std::string temporaryArchive_;
};
