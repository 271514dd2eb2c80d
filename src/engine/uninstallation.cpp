#include "engine/uninstallation.h"

#include <charconv>
#include <cstdint>

#include "base/fixed_text.h"
#include "description/control_variables.h"
#include "description/variable_store.h"
#include "engine/action_log_format.h"
#include "engine/additional_actions.h"
#include "engine/backup_restore.h"
#include "engine/changes/change_table.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "engine/wildcard_remover.h"
#include "platform/written_path.h"
#include "support/p_stream.h"

namespace {

namespace Format = ActionLogFormat;

constexpr std::size_t kPathLimit = PathText::capacity() - 1;

// The count in the line that begins the variables: its tag, a separator and a number.
std::optional<std::int64_t> variableCountIn(std::string_view line) {
    if (!line.starts_with(Format::kVariableCount)) {
        return std::nullopt;
    }
    const std::string_view digits = withoutTrailingSpace(line.substr(Format::kVariableCount.size()));
    if (digits.size() < 2 || digits.front() != Format::kSeparator) {
        return std::nullopt;
    }
    std::int64_t count = 0;
    const auto [end, error] = std::from_chars(digits.data() + 1, digits.data() + digits.size(), count);
    const bool isNumber = error == std::errc() && end == digits.data() + digits.size();
    return isNumber ? std::optional(count) : std::nullopt;
}

// Where the records begin. A log without a count of variables consists of records from its first line on.
std::int64_t findRecords(PStream& log) {
    LineReader reader(log);
    std::string line;
    reader.rewind();
    while (reader.readLine(line, Format::kRecordLineBuffer)) {
        if (auto count = variableCountIn(line)) {
            for (; *count > 0 && reader.readLine(line, Format::kRecordLineBuffer); --*count) {
            }
            return reader.position();
        }
    }
    return 0;
}

}  // namespace

// The records of one log on their way back: each is looked up in the table of changes and undone.
class Uninstallation::Walk {
public:
    explicit Walk(ChangeJob& job) : report_(job.context.report) {
        for (const ChangeKind& kind : changeKinds()) {
            changes_.push_back({kind, kind.make(job)});
        }
    }

    void undoRecords(PStream& log) {
        const std::int64_t start = findRecords(log);
        undoFirstPass(log, start);
        report_.flushLines();
        report_.begin();
        undoMainPass(log, start);
    }
    void finish(UndoEnd end) {
        for (Row& row : changes_) {
            if (row.kind.end == end) {
                noteResult(row.change->finishUndo());
            }
        }
    }
    void noteResult(bool done) { failed_ = failed_ || !done; }
    bool hasFailed() const { return failed_; }

private:
    struct Row {
        const ChangeKind& kind;
        std::unique_ptr<Change> change;
    };

    // Also counts the lines, which are the steps of the main pass.
    void undoFirstPass(PStream& log, std::int64_t start) {
        LineReader reader(log);
        reader.moveTo(start);
        std::int64_t count = 0;
        for (std::string line; reader.readLine(line, Format::kRecordLineBuffer); ++count) {
            undo(withoutTrailingSpace(line), UndoPass::kFirst);
            if (count % Report::kStepsPerFlush == 0) {
                report_.flushLines();
            }
        }
        report_.expectSteps(count);
    }
    void undoMainPass(PStream& log, std::int64_t start) {
        LineReader reader(log);
        reader.moveTo(start);
        for (std::string line; reader.readLine(line, Format::kRecordLineBuffer);) {
            undo(withoutTrailingSpace(line), UndoPass::kMain);
            report_.finishStep();
        }
    }
    void undo(std::string_view line, UndoPass pass) {
        for (Row& row : changes_) {
            const std::string_view tag = row.kind.tagOf(line);
            if (!tag.empty() && row.kind.pass == pass) {
                noteResult(row.change->undo({tag, nextLogField(line)}));
                return;
            }
        }
    }

    Report& report_;
    std::vector<Row> changes_;
    bool failed_ = false;
};

Uninstallation::Uninstallation(const EngineParts& parts)
    : parts_(parts), logFile_(parts.machine.files), log_(logFile_) {}

void Uninstallation::prepare(PStream* log, const std::optional<std::string>& backupPath, Report& report) {
    if (!isPrepared_) {
        isPrepared_ = true;
        if (backupPath) {
            backupPath_ = backupPath->substr(0, kPathLimit);
        } else {
            readBackupPath(log);
        }
    }
    if (!actionsHaveRun_) {
        actionsHaveRun_ = true;
        ChangeJob job(parts_, log_, report);
        AdditionalActions(job.context, parts_).run("PreUninstall");
    }
}

void Uninstallation::readBackupPath(PStream* log) {
    if (log == nullptr) {
        parts_.debugLog.line(
            "WARNING: PrepareUninstall called without open action log and no specified backup file!");
        return;
    }
    LineReader reader(*log);
    std::string line;
    if (reader.rewind() && reader.readLine(line, Format::kRecordLineBuffer) &&
        reader.readLine(line, Format::kBackupLineBuffer)) {
        backupPath_ = withoutTrailingSpace(line).substr(0, kPathLimit);
    }
}

bool Uninstallation::run(PStream* log, const std::optional<std::string>& backupPath, Report& report) {
    prepare(log, backupPath, report);
    ChangeJob job(parts_, log_, report);
    job.replaced.restored =
        !backupPath_.empty() && restoreBackupFile(backupPath_, parts_.machine.files, report);
    report.setStatus("Uninstalling");
    Walk walk(job);
    if (log != nullptr) {
        walk.undoRecords(*log);
    } else {
        parts_.debugLog.line("ERROR: There is no action log to uninstall from");
        walk.noteResult(false);
        report.begin();
    }
    report.flushLines();
    walk.finish(UndoEnd::kBeforeCleaning);
    removeByWildcards(job);
    walk.finish(UndoEnd::kAfterCleaning);
    report.setProgress(100);
    report.end();
    walk.finish(UndoEnd::kAfterProgress);
    report.setStatus(walk.hasFailed() ? "There were errors during the uninstall."
                                      : "The uninstall was successful.");
    if (walk.hasFailed()) {
        setErrorVariable();
    }
    return !walk.hasFailed();
}

// A pattern that cleans nothing, because it is refused, is no error.
void Uninstallation::removeByWildcards(ChangeJob& job) {
    DescriptionTags& tags = job.tags;
    const std::int32_t group = tags.firstOf("UninstallWildcards");
    if (group < 0) {
        return;
    }
    WildcardRemover remover(parts_.machine.files);
    std::int64_t done = 0;
    for (const std::int32_t node : tags.childrenOf(group)) {
        if (!tags.textOf(node) || !tags.conditionHolds(node)) {
            continue;
        }
        const std::string pattern(*tags.textOf(node));
        const std::string directory = tags.expandAttribute(node, "Dest");
        if (!remover.deleteByWildcard(directory, pattern, tags.isSet(node, "DeleteDirs"))) {
            parts_.debugLog.print("WARNING: Nothing is cleaned in \"%s\" by \"%s\"", directory.c_str(),
                                  pattern.c_str());
        }
        std::string line = "Delete: ";
        line.append(platform::writtenPath(directory)).append("/").append(pattern);
        job.context.report.addLine(line, done++ % Report::kStepsPerFlush == 0);
    }
    job.context.report.flushLines();
}

void Uninstallation::setErrorVariable() {
    const std::string_view name = parts_.model.controls.nameOf(ControlVariable::kUninstallError);
    if (!name.empty()) {
        parts_.model.variables.set(name, "1");
    }
}
