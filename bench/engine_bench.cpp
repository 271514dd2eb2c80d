// Runs single operations of the engine, for bench/run:
//
//   engine_bench backup LOG ARCHIVE DIRECTORIES   saves the files that an action log names, as an upgrade
//   does
//                                                 before it removes them
//   engine_bench restore ARCHIVE                  brings them back; their directories exist

#include <cstdio>
#include <string>
#include <string_view>

#include "engine/backup_restore.h"
#include "engine/installed_files_backup.h"
#include "engine/report.h"
#include "platform/file_system.h"

namespace {

bool backUp(const std::string& log, const UninstallBackup& paths) {
    Report silent(nullptr, nullptr);
    const auto noName = [] { return std::optional<std::string>(); };
    return InstalledFilesBackup(platform::systemFileSystem(), noName, silent, DebugLog()).make(log, paths);
}

bool restore(const std::string& archive) {
    Report silent(nullptr, nullptr);
    return restoreBackupFile(archive, platform::systemFileSystem(), silent) == RestoreResult::kDone;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view operation = count > 1 ? arguments[1] : "";
    if (operation == "backup" && count == 5) {
        return backUp(arguments[2], {"bench", arguments[3], arguments[4]}) ? 0 : 1;
    }
    if (operation == "restore" && count == 3) {
        return restore(arguments[2]) ? 0 : 1;
    }
    std::fprintf(stderr, "usage: engine_bench backup LOG ARCHIVE DIRECTORIES | restore ARCHIVE\n");
    return 2;
}
