#include "engine/backup_restore.h"

#include <string>

#include "contracts/installer_ui.h"
#include "package/backup_file.h"
#include "support/debug_log.h"

namespace {

constexpr std::int64_t kLinesToAFlush = 32;

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
    explicit RestoreReport(InstallerUI& ui) : ui_(ui) {}

    void beforeFile() override { ui_.pumpEvents(); }
    void fileDone(std::string_view path, RestoreOutcome outcome, std::int64_t number) override {
        const std::string line = std::string(lineStart(outcome)) + std::string(path);
        ui_.addFileLine(line.c_str(), number % kLinesToAFlush == 0);
    }
    void progress(int percent) override { ui_.setCurrentProgress(percent); }

private:
    InstallerUI& ui_;
};

}  // namespace

// The lines of the archive's own log go nowhere: an uninstallation has only ever shown the files.
bool restoreBackupFile(std::string_view archivePath, platform::FileSystem& files, InstallerUI& ui) {
    BackupFile archive(files);
    if (!archive.openForReading(archivePath)) {
        return false;
    }
    RestoreReport report(ui);
    const bool isWhole = archive.restoreAll(DebugLog(), report);
    if (isWhole) {
        ui.addFileLine(nullptr, true);
    }
    return isWhole;
}
