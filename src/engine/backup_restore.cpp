#include "engine/backup_restore.h"

#include <string>

#include "engine/report.h"
#include "package/backup_file.h"
#include "platform/written_path.h"
#include "support/debug_log.h"

namespace {

std::string_view lineStart(RestoreOutcome outcome) {
    switch (outcome) {
        case RestoreOutcome::kRestored:
            return "Restore ";
        case RestoreOutcome::kFailed:
            return "FAILED to restore ";
        case RestoreOutcome::kLeft:
            return "Left ";
    }
    return "";
}

class RestoreReport : public BackupRestoreObserver {
public:
    explicit RestoreReport(Report& report) : report_(report) {}

    void beforeFile() override { report_.pumpEvents(); }
    void fileDone(std::string_view path, RestoreOutcome outcome, std::int64_t number) override {
        report_.addLine(std::string(lineStart(outcome)) + platform::writtenPath(path),
                        number % Report::kStepsPerFlush == 0);
    }
    void progress(int percent) override { report_.setProgress(percent); }

private:
    Report& report_;
};

}  // namespace

// The lines of the archive's own log go nowhere: an uninstallation has only ever shown the files.
bool restoreBackupFile(std::string_view archivePath, platform::FileSystem& files, Report& report) {
    BackupFile archive(files);
    if (!archive.openForReading(archivePath)) {
        return false;
    }
    RestoreReport observer(report);
    const bool isWhole = archive.restoreAll(DebugLog(), observer);
    if (isWhole) {
        report.flushLines();
    }
    return isWhole;
}
