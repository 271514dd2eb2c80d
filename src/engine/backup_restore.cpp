#include "engine/backup_restore.h"

#include <string>

#include "engine/report.h"
#include "package/backup_file.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "support/debug_log.h"

namespace {

constexpr int kNotPlain = -1;

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
    RestoreReport(Report& report, const RestoreQuestions& questions)
        : report_(report), questions_(questions) {}

    void beforeFile() override { report_.pumpEvents(); }
    void fileDone(std::string_view path, RestoreOutcome outcome, std::int64_t number, int status) override {
        const std::string line = std::string(lineStart(outcome)) + platform::writtenPath(path);
        report_.addLine(line, number % Report::kStepsPerFlush == 0);
        if (outcome == RestoreOutcome::kLeft && questions_.onLeft) {
            questions_.onLeft(path);
        }
        if (outcome == RestoreOutcome::kFailed) {
            ++failures_;
            report_.addError(line);
            addReason(path, status);
        }
    }
    void progress(int percent) override { report_.setProgress(percent); }
    bool isToEnd() override { return questions_.isToEnd && questions_.isToEnd(); }
    bool wasReplaced(std::string_view path) override {
        return !questions_.wasReplaced || questions_.wasReplaced(path);
    }

    std::string rightsOf(std::string_view path) override {
        return questions_.rightsOf ? questions_.rightsOf(path) : std::string();
    }

    std::int64_t failures() const { return failures_; }

private:
    void addReason(std::string_view path, int status) {
        if (status == kNotPlain) {
            report_.addReason(path, "something else than a file is in its place");
        } else {
            report_.addReason(path, status);
        }
    }

    Report& report_;
    const RestoreQuestions& questions_;
    std::int64_t failures_ = 0;
};

std::string failureNote(std::int64_t failures, std::string_view remedy) {
    return std::to_string(failures) + (failures == 1 ? " file" : " files") + " could not be restored. " +
           std::string(remedy);
}

}  // namespace

// The lines of the archive's own log go nowhere: an uninstallation has only ever shown the files.
RestoreResult restoreBackupFile(std::string_view archivePath, platform::FileSystem& files, Report& report,
                                const RestoreQuestions& questions) {
    if (!files.exists(archivePath)) {
        return RestoreResult::kNoArchive;
    }
    BackupFile archive(files);
    RestoreReport observer(report, questions);
    const bool isWhole = archive.openForReading(archivePath) && archive.restoreAll(DebugLog(), observer);
    if (isWhole) {
        report.flushLines();
    }
    if (!isWhole && !observer.isToEnd()) {
        report.note("The backup archive " + std::string(archivePath) +
                    " can't be read to its end. Files that it may hold stay as they are.");
        report.addReason(archivePath, archive.fault());
    }
    if (observer.failures() > 0) {
        report.note(failureNote(observer.failures(), questions.remedy));
    }
    return isWhole && observer.failures() == 0 ? RestoreResult::kDone : RestoreResult::kFailed;
}
