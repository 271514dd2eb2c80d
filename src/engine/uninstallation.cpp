#include "engine/uninstallation.h"

#include <vector>

#include "base/errors.h"
#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "description/control_variables.h"
#include "description/expressions.h"
#include "description/product_description.h"
#include "description/variable_store.h"
#include "engine/action_log_reader.h"
#include "engine/additional_actions.h"
#include "engine/backup_restore.h"
#include "engine/log_head.h"
#include "engine/overall_progress.h"
#include "engine/product_state.h"
#include "engine/record_reader.h"
#include "engine/report.h"
#include "engine/undo_walk.h"
#include "engine/unfinished_files.h"
#include "engine/uninstall_command.h"
#include "engine/wildcard_remover.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"
#include "support/p_stream.h"

namespace {

constexpr std::size_t kPathLimit = PathText::capacity() - 1;

constexpr std::string_view kNotForgotten = "FAILED to remove what is remembered of the product's files";

ProductState stateOf(const EngineParts& parts) {
    return {parts.machine.files, parts.machine.environment};
}

std::int64_t countRecords(PStream& log, const LogHead& head) {
    RecordReader records(log, head.recordsStart);
    std::int64_t count = 0;
    while (records.next()) {
        ++count;
    }
    return count;
}

}  // namespace

// One pattern of UninstallWildcards whose condition held.
struct Uninstallation::Cleaning {
    std::string directory;
    std::string pattern;
    bool deleteDirectories;
};

// The product as its log knows it: the texts of its description with the variables of the log. What the
// default values made of these variables in this session isn't what was installed.
struct Uninstallation::Product {
    Product(const EngineParts& parts, PStream* log)
        : head(log == nullptr ? LogHead() : readLogHead(*log)),
          values(head, parts.model.variables),
          expressions(values, parts.debugLog),
          tags(parts.model.description, expressions),
          texts(parts.model.description, expressions) {}

    std::string logPath() const { return texts.installLogFile().value_or(""); }
    std::string uninstaller() const { return texts.uninstallCommand().value_or(""); }

    LogHead head;
    LoggedValues values;
    Expressions expressions;
    DescriptionTags tags;
    ProductDescription texts;
    std::vector<Cleaning> cleanings;
};

Uninstallation::Uninstallation(const EngineParts& parts)
    : parts_(parts), logFile_(parts.machine.files), log_(logFile_) {}

void Uninstallation::prepare(PStream* log, const std::optional<std::string>& backupPath, Report& report) {
    // In a session that installs, the actions may run long before there is a log, whose undo is a revert.
    if (!isPrepared_ || (backupPath_.empty() && log != nullptr)) {
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
    backupPath_ = ActionLogReader(log, parts_.debugLog).readArchivePath().value_or("").substr(0, kPathLimit);
}

bool Uninstallation::run(PStream* log, const std::optional<std::string>& backupPath, Report& report,
                         const StopRequest& isToEnd, Repetition repetition) {
    prepare(log, backupPath, report);
    ChangeJob job(parts_, log_, report);
    UndoWalk walk(job, isToEnd);
    Product product(parts_, log);
    if (stateOf(parts_).beginUndo(product.logPath())) {
        removeUnfinishedFiles(parts_.machine.files, product.logPath());
    }
    findArchive(product, report);
    if (log != nullptr) {
        holdWhatRepetitionNeeds(*log, product, repetition, job);
    }
    planProgress(log, product.head, report);
    restoreArchive(log, product, walk, job);
    const bool isLogRead = walkLog(log, product.head, walk, report);
    walk.finish(UndoEnd::kBeforeCleaning);
    if (isLogRead && !walk.isToEnd()) {
        removeByWildcards(product, job);
    }
    walk.finish(UndoEnd::kAfterCleaning);
    report.setProgress(100);
    report.end();
    walk.finish(UndoEnd::kAfterProgress);
    if (const int status = stateOf(parts_).endUndo(product.logPath()); status != 0) {
        walk.noteResult(report.addOutcome(false, kNotForgotten));
        report.addReason(stateOf(parts_).markOf(product.logPath()), status);
    }
    const bool canBeRepeated = removeProduct(product, walk, job) && repetition == Repetition::kPossible;
    state_ = walk.hasFailed() && canBeRepeated ? State::kToBeRepeated : State::kOver;
    reportEnd(walk.hasFailed(), canBeRepeated, report);
    return !walk.hasFailed();
}

// The records are counted only where somebody looks at the bar.
void Uninstallation::planProgress(PStream* log, const LogHead& head, Report& report) {
    if (report.overall() == nullptr) {
        return;
    }
    const bool hasArchive = !backupPath_.empty() && parts_.machine.files.exists(backupPath_);
    report.overall()->plan(JobStage::kRestore, hasArchive ? parts_.machine.files.fileSize(backupPath_) : 0);
    report.overall()->plan(JobStage::kUndo,
                           log == nullptr ? 0 : countRecords(*log, head) * OverallProgress::kStepWeight);
}

// False when the log is there and can't be read: then it isn't known what else has to stay for a repetition.
bool Uninstallation::walkLog(PStream* log, const LogHead& head, UndoWalk& walk, Report& report) {
    report.setStatusWord(WordKey("UninstallStatus"));
    report.beginStage(JobStage::kUndo);
    bool isRead = true;
    if (log == nullptr) {
        parts_.debugLog.line("ERROR: There is no action log to uninstall from");
        walk.noteResult(false);
        report.begin();
    } else {
        if (!head.isSound) {
            report.note(
                "The variables of the install log are missing or damaged. Its records are undone all the "
                "same.");
        }
        isRead = walk.undoRecords(*log, head.recordsStart);
    }
    report.flushLines();
    return isRead;
}

// Twice, because a log that is damaged may lack the variables, and default values may be other ones. The
// description also by its own words, because the log may not be readable.
void Uninstallation::holdWhatRepetitionNeeds(PStream& log, const Product& product, Repetition repetition,
                                             ChangeJob& job) {
    job.kept.hold(backupPath_);
    if (repetition == Repetition::kNone) {
        job.kept.close();
    }
    job.kept.hold(ActionLogReader(&log, parts_.debugLog).readDescriptionPath().value_or(""));
    for (const ProductDescription* texts : {&product.texts, &parts_.model.product}) {
        job.kept.hold(texts->uninstallXmlFile().value_or(""));
        job.kept.hold(texts->installLogFile().value_or(""));
        job.kept.hold(texts->uninstallCommand().value_or(""));
    }
    if (!product.head.isSound) {
        job.kept.holdByName(OUtils::lastPathComponent(product.uninstaller()));
    }
}

void Uninstallation::restoreArchive(PStream* log, const Product& product, UndoWalk& walk, ChangeJob& job) {
    const WrittenSums written = stateOf(parts_).load(product.logPath());
    job.context.report.beginStage(JobStage::kRestore);
    const bool isChanged = isArchiveChanged(written);
    const RestoreResult result = restoreFiles(log, product.head, walk, job.context.report);
    if (result == RestoreResult::kNoArchive) {
        job.replaced.isArchiveMissing = true;
        job.replaced.written = written;
    }
    if (isChanged) {
        job.context.report.note("The backup archive " + platform::writtenPath(backupPath_) +
                                " has been changed since the installation. What was restored from it may be "
                                "damaged.");
    }
    walk.noteResult(result != RestoreResult::kFailed && !isChanged);
}

bool Uninstallation::isArchiveChanged(const WrittenSums& written) {
    if (!written.knows(backupPath_)) {
        return false;
    }
    const auto digest = digestOfFile(parts_.machine.files, backupPath_);
    return digest && !written.holds(backupPath_, *digest);
}

// The line of the log that names the archive may be damaged. What the archive holds is lost for ever when a
// clean-up deletes it, so the place that the description gives is looked at as well.
void Uninstallation::findArchive(const Product& product, Report& report) {
    platform::FileSystem& files = parts_.machine.files;
    const std::string described = product.texts.installBackupFile().value_or("");
    const bool isThere = !backupPath_.empty() && files.exists(backupPath_);
    if (isThere || described.empty() || !files.exists(described)) {
        return;
    }
    const std::string fault = backupPath_.empty()
                                  ? "The install log names no backup archive; "
                                  : "There is no backup archive " + platform::writtenPath(backupPath_) + "; ";
    report.note(fault + platform::writtenPath(described) + " is used.");
    backupPath_ = described.substr(0, kPathLimit);
}

RestoreResult Uninstallation::restoreFiles(PStream* log, const LogHead& head, UndoWalk& walk,
                                           Report& report) {
    if (backupPath_.empty()) {
        return RestoreResult::kNoArchive;
    }
    RestoreQuestions questions;
    questions.isToEnd = [&walk] { return walk.isToEnd(); };
    if (log != nullptr) {
        questions.wasReplaced = [replaced =
                                     walk.replacedFiles(*log, head.recordsStart)](std::string_view path) {
            return replaced.contains(platform::pathIdentity(path));
        };
    }
    return restoreBackupFile(backupPath_, parts_.machine.files, report, questions);
}

// A pattern that cleans nothing, because it is refused, is no error.
void Uninstallation::removeByWildcards(Product& product, ChangeJob& job) {
    DescriptionTags& tags = job.tags;
    const std::int32_t group = tags.firstOf("UninstallWildcards");
    if (group < 0) {
        return;
    }
    for (const std::int32_t node : tags.childrenOf(group)) {
        if (!tags.textOf(node) || !tags.conditionHolds(node)) {
            continue;
        }
        const std::string pattern(*tags.textOf(node));
        const std::string_view place = tags.attribute(node, "Dest").value_or("");
        const std::string directory = product.tags.expand(place, true);
        if (directory.empty() && !place.empty()) {
            job.context.report.note("Nothing is cleaned in \"" + std::string(place) + "\" by \"" + pattern +
                                    "\": the install log doesn't give the variables.");
            continue;
        }
        product.cleanings.push_back({directory, pattern, tags.isSet(node, "DeleteDirs")});
    }
    std::int64_t done = 0;
    for (const Cleaning& cleaning : product.cleanings) {
        if (!clean(cleaning, job)) {
            parts_.debugLog.line("WARNING: Nothing is cleaned in \"" + cleaning.directory + "\" by \"" +
                                 cleaning.pattern + "\"");
        }
        job.context.report.addLine(
            "Delete: " + platform::writtenPath(cleaning.directory) + "/" + cleaning.pattern,
            done++ % Report::kStepsPerFlush == 0);
    }
    job.context.report.flushLines();
}

bool Uninstallation::clean(const Cleaning& cleaning, ChangeJob& job) {
    const auto keeps = [&job](const std::string& path) {
        job.context.report.pumpEvents();  // one pattern may clean a large tree
        return job.kept.postponesFile(path);
    };
    WildcardRemover remover(parts_.machine.files, keeps);
    const bool isCleaned =
        remover.deleteByWildcard(cleaning.directory, cleaning.pattern, cleaning.deleteDirectories)
            .has_value();
    if (remover.fault() != 0) {
        job.context.report.addReason(remover.faultyPath(), remover.fault());
    }
    return isCleaned;
}

// The last steps of a walk in which everything else went well. False when the uninstaller has gone and other
// files have not.
bool Uninstallation::removeProduct(Product& product, UndoWalk& walk, ChangeJob& job) {
    if (walk.hasFailed() || walk.isToEnd()) {
        return true;
    }
    // First, while a failure can be repeated. A repetition after this can do without.
    ProductState remembered = stateOf(parts_);
    if (!remembered.remove(product.logPath())) {
        const std::string subject = "What is remembered of the product's files";
        job.context.report.addReason(subject, remembered.failure());
        walk.noteResult(job.context.report.addOutcome(false, kNotForgotten));
        return true;
    }
    if (!removeEntry(job.context.report)) {
        walk.noteResult(job.context.report.addOutcome(false, "FAILED to remove " + *entry_));
        return true;
    }
    // The list of applications may have been all that kept a registry key of the product.
    walk.finish(UndoEnd::kBeforeCleaning);
    if (walk.hasFailed()) {
        return restoreEntry(product);
    }
    return removeKeptFiles(product, walk, job);
}

// The uninstaller goes first: of these files it is the likeliest to resist, because somebody may run it. The
// description goes after the log: a log without it would be in the way of every setup, and can't be undone.
bool Uninstallation::removeKeptFiles(Product& product, UndoWalk& walk, ChangeJob& job) {
    job.kept.release();
    walk.deletePostponed(product.uninstaller());
    if (walk.hasFailed()) {
        return parts_.machine.files.exists(product.uninstaller()) && restoreEntry(product);
    }
    for (const Cleaning& cleaning : product.cleanings) {
        clean(cleaning, job);
    }
    walk.deletePostponed();
    for (const std::string& path : job.kept.leftFiles()) {
        walk.noteResult(
            job.context.report.addOutcome(false, "FAILED to delete " + platform::writtenPath(path)));
    }
    walk.finish(UndoEnd::kAfterCleaning);
    job.context.report.flushLines();
    return !walk.hasFailed();
}

bool Uninstallation::unregister(Report& report) {
    const std::optional<std::string> name = parts_.model.product.fullName();
    if (!name || state_ == State::kToBeRepeated) {
        return false;
    }
    entry_ = name;
    return state_ == State::kNotRun || removeEntry(report);
}

// An entry that can't be read is still there.
bool Uninstallation::removeEntry(Report& report) {
    try {
        if (!entry_ || !parts_.system.findUninstallEntry(*entry_, 0) ||
            parts_.system.removeUninstallEntry(*entry_)) {
            return true;
        }
    } catch (const GenericError& error) {
        report.note(error.what());
        return false;
    }
    report.addKnownReason(*entry_, parts_.system.entryFault());
    return false;
}

// The uninstaller resisted: the entry that starts it comes back.
bool Uninstallation::restoreEntry(const Product& product) {
    if (!entry_) {
        return true;
    }
    const auto entry = applicationEntryOf(product.texts, parts_.debugLog);
    return entry && parts_.system.registerApplication(*entry);
}

void Uninstallation::reportEnd(bool failed, bool canBeRepeated, Report& report) {
    if (failed) {
        report.note(canBeRepeated
                        ? "The uninstallation is not complete. What it needs to be repeated has been left."
                        : "The uninstallation is not complete.");
        setErrorVariable();
    }
    report.setStatusWord(failed ? WordKey("UninstallStatusFailed") : WordKey("UninstallStatusDone"));
}

void Uninstallation::setErrorVariable() {
    const std::string_view name = parts_.model.controls.nameOf(ControlVariable::kUninstallError);
    if (!name.empty()) {
        parts_.model.variables.set(name, "1");
    }
}
