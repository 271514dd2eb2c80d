#include "engine/installation.h"

#include <algorithm>
#include <memory>

#include "base/errors.h"
#include "description/control_variables.h"
#include "description/file_sets.h"
#include "description/product_description.h"
#include "description/variable_store.h"
#include "engine/action_log_rewriter.h"
#include "engine/additional_actions.h"
#include "engine/changes/change_table.h"
#include "engine/configuration_export.h"
#include "engine/directory_check.h"
#include "engine/file_planner.h"
#include "engine/installation_records.h"
#include "engine/overall_progress.h"
#include "engine/report.h"
#include "platform/written_path.h"

namespace {

constexpr WordKey kActionsStatus = "StatusActions";
constexpr std::string_view kConfigFileName = "config.xml";

// The user will type this path on a command line, so the separator is the one that the system uses.
std::string configFileIn(const std::string& directory) {
    const std::size_t separator = directory.find_last_of("/\\");
    const char character = separator == std::string::npos ? '/' : directory[separator];
    const bool endsWithSeparator = !directory.empty() && separator == directory.size() - 1;
    return directory + (endsWithSeparator ? "" : std::string(1, character)) + std::string(kConfigFileName);
}

void reportConfigFile(Report& report, const std::string& configFile) {
    const std::string path = platform::writtenPath(configFile);
    report.addLine("Successfully created configuration file:\n\t\"" + path + "\"", false);
    report.addLine(
        "You can use the file to automatically install the same product on different machine with the same "
        "settings, by running the installer with the following arguments:",
        false);
    report.addLine(" -configFile=\"" + path + "\" {-ignoreErrors=1}", true);
}

}  // namespace

Installation::Installation(const EngineParts& parts, InstallationMark* mark)
    : parts_(parts), mark_(mark), logFile_(parts.machine.files), log_(logFile_) {}

bool Installation::isPossible(Report& report, const std::vector<ExpectedRemoval>& removals) {
    return DirectoryCheck(parts_, report).run() && FreeSpaceCheck(parts_, report).run(removals);
}

void Installation::plan(OverallProgress& overall) {
    FilePlanner planner(parts_.model.fileSets, parts_.model.expressions, DebugLog());
    std::int64_t copying = 0;
    for (const FileEntry& file : parts_.model.fileSets.getFiles()) {
        copying += planner.isSelected(file) ? FileChange::weightOf(file) : 0;
    }
    const auto phases =
        std::ranges::count_if(changeKinds(), [](const ChangeKind& kind) { return kind.status.has_value(); });
    overall.plan(JobStage::kCopy, copying);
    overall.plan(JobStage::kChange, phases * OverallProgress::kStepWeight);
    overall.plan(JobStage::kActions, OverallProgress::kStepWeight);
}

bool Installation::run(Report& report, const Preparation& prepare,
                       const std::vector<ExpectedRemoval>& removals) {
    auto job = std::make_unique<ChangeJob>(parts_, log_, report);
    auto records = std::make_unique<InstallationRecords>(parts_, *job, mark_);
    const bool isDone = run(*job, *records, prepare, removals);
    // It takes a tenth of a second to free what is known of 100,000 files.
    report.pumpEventsDuring([&] {
        records.reset();
        job.reset();
        return 0;
    });
    return isDone;
}

bool Installation::run(ChangeJob& job, InstallationRecords& records, const Preparation& prepare,
                       const std::vector<ExpectedRemoval>& removals) {
    Report& report = job.context.report;
    if (!DirectoryCheck(parts_, report).run() || !records.open()) {
        return refuse();
    }
    if (!FreeSpaceCheck(parts_, report).run(removals)) {
        records.discard();
        return refuse();
    }
    runPreparation(prepare, records);
    if (!records.begin()) {
        return refuse();
    }
    try {
        return makeChanges(job, records);
    } catch (...) {
        // What was changed until then can be taken back only with its records.
        publish(records, report);
        reportEnd(report, true);
        setErrorVariable();
        throw;
    }
}

void Installation::runPreparation(const Preparation& prepare, InstallationRecords& records) {
    if (!prepare) {
        return;
    }
    try {
        prepare();
    } catch (...) {
        records.discard();
        setErrorVariable();
        throw;
    }
}

// Nothing was installed, so there are no errors that could be ignored.
bool Installation::refuse() {
    setErrorVariable();
    return false;
}

bool Installation::makeChanges(ChangeJob& job, InstallationRecords& records) {
    Report& report = job.context.report;
    report.begin();
    bool failed = !FileChange(job.context, parts_, job.replaced).apply();
    const FailedPhases failedPhases = runPhases(job);
    report.setStatusWord(kActionsStatus);
    report.beginStage(JobStage::kActions);
    const bool actionsSucceeded = AdditionalActions(job.context, parts_).run("AdditionalInstall");
    // Published before the outcome is reported, so that the report is true.
    failed = !publish(records, report) || failed || !actionsSucceeded || !failedPhases.empty();
    reportEnd(report, failed);
    if (failed && !report.ignoresErrors()) {
        reportErrors(report, failedPhases);
    }
    return !failed;
}

bool Installation::publish(InstallationRecords& records, Report& report) {
    const bool published = records.publish();
    publishedLog_ = records.publishedLog();
    continuesEarlierRecords_ = !publishedLog_.empty() && records.continueEarlierOnes();
    if (!published) {
        report.addError("FAILED to write the install log or the backup file");
    }
    return published;
}

// Files have no phase: they are done, under the names of the single files, before the first one.
Installation::FailedPhases Installation::runPhases(ChangeJob& job) {
    FailedPhases failed;
    job.context.report.beginStage(JobStage::kChange);
    for (const ChangeKind& kind : changeKinds()) {
        if (!kind.status) {
            continue;
        }
        job.context.report.setStatusWord(*kind.status);
        if (!kind.make(job)->apply()) {
            failed.push_back(kind.status->text());
        }
        job.context.report.advance(OverallProgress::kStepWeight);
    }
    return failed;
}

void Installation::reportEnd(Report& report, bool failed) {
    report.setProgress(100);
    report.end();
    report.flushLines();
    report.setStatusWord(failed ? WordKey("StatusFailed") : WordKey("StatusDone"));
}

void Installation::reportErrors(Report& report, const FailedPhases& failedPhases) {
    parts_.debugLog.line("WARNING: An error ocurred during installation");
    for (const std::string_view phase : failedPhases) {
        const std::string name(phase);
        parts_.debugLog.line("ERROR: Encountered an error during " + name);
        report.addError("Error during: " + name);
    }
    setErrorVariable();
    report.showErrors("Encountered errors during installation:");
}

void Installation::setErrorVariable() {
    const std::string_view variable = parts_.model.controls.nameOf(ControlVariable::kInstallError);
    if (!variable.empty()) {
        parts_.model.variables.set(variable, "1");
    }
}

void Installation::runActions(std::string_view container, Report& report) {
    ChangeJob job(parts_, log_, report);
    AdditionalActions(job.context, parts_).run(container);
}

void Installation::finish(Report& report, bool leavesConfiguration,
                          const std::optional<std::string>& directory) {
    if (isFinished_) {
        return;
    }
    isFinished_ = true;
    runActions("PostInstall", report);
    updateActionLog(report);
    if (leavesConfiguration) {
        exportConfiguration(report, directory);
    }
}

// Variables may have changed since the files were copied.
void Installation::updateActionLog(Report& report) {
    const std::optional<std::string> path = parts_.model.product.installLogFile();
    if (!path) {
        throw InstallerError("ERROR: Obtaining install actionlog filename");
    }
    const std::vector<LoggedVariable> variables = loggedVariables(parts_.model);
    report.pumpEventsDuring([&] {
        ActionLogRewriter(parts_.machine.files).rewriteActionLog(*path, variables);
        return 0;
    });
}

void Installation::exportConfiguration(Report& report, const std::optional<std::string>& directory) {
    const std::string path = directory ? configFileIn(*directory) : "";
    ConfigurationExport configuration(parts_.model.variables, parts_.model.exclusions, parts_.machine.files,
                                      parts_.debugLog);
    if (!path.empty() && configuration.write(path)) {
        reportConfigFile(report, path);
    } else {
        report.addLine("The installer could not create configuration file!", true);
        report.addReason(kConfigFileName, path.empty() ? "the directory of this program isn't known"
                                                       : std::string_view(configuration.reason()));
    }
}

std::string Installation::extractAlias(std::string_view alias, std::string_view directory,
                                       bool expandVariablesInFile, bool stripExeExtension) {
    FileContents contents(parts_.cabinet, parts_.model.expressions, parts_.debugLog);
    return AliasExtractor(parts_.cabinet, contents, parts_.machine.files)
        .extractAlias(alias, directory, expandVariablesInFile, stripExeExtension);
}
