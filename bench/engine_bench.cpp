// Runs single operations of the engine, for bench/run:
//
//   engine_bench backup LOG ARCHIVE DIRECTORIES   saves the files that an action log names, and their rights,
//   as
//                                                 an upgrade does before it removes them; leaves a journal in
//                                                 the state directory
//   engine_bench restore ARCHIVE                  brings them back, with their rights; their directories and
//   the
//                                                 journal exist

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "engine/backup_restore.h"
#include "engine/installed_files_backup.h"
#include "engine/removal_journal.h"
#include "engine/report.h"
#include "platform/environment.h"
#include "platform/file_system.h"

namespace {

bool backUp(const std::string& log, const UninstallBackup& paths) {
    platform::FileSystem& files = platform::systemFileSystem();
    Report silent(nullptr, nullptr);
    const auto noName = [] { return std::optional<std::string>(); };
    RemovalJournal journal(files, platform::systemEnvironment());
    InstalledFilesBackup backup(files, noName, silent, DebugLog());
    return journal.open() == 0 && backup.make(log, paths) &&
           journal.noteArchived(backup.archivedFiles()) == 0;
}

bool restore(const std::string& archive) {
    platform::FileSystem& files = platform::systemFileSystem();
    Report silent(nullptr, nullptr);
    RemovalJournal journal(files, platform::systemEnvironment());
    const std::vector<std::string> journals = journal.directoriesOnDisk();
    RestoreQuestions questions;
    questions.rightsOf = [&](std::string_view path) { return journal.rightsOf(path); };
    return journals.size() == 1 && journal.resume(journals.front()) == 0 &&
           restoreBackupFile(archive, files, silent, questions) == RestoreResult::kDone;
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
