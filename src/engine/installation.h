#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/action_log_writer.h"
#include "engine/directory_check.h"
#include "engine/engine_parts.h"
#include "engine/free_space_check.h"
#include "support/p_file_console.h"

class InstallationMark;
class InstallationRecords;
class OverallProgress;
class Report;
struct ChangeJob;
struct ChangeKind;

// Installs the product: its files, then every other change that the description asks for, then the last
// actions. One object for a session; one job at a time, on the session's thread.
class Installation {
public:
    // The mark outlives this object; without one a later run doesn't learn of an installation that is killed.
    explicit Installation(const EngineParts& parts, InstallationMark* mark = nullptr);

    // What has to be done after the installation is known to be possible and before its first change.
    using Preparation = std::function<void()>;

    // Makes all changes and publishes what was recorded for the undo. Every error is collected and the job
    // runs to its end; what becomes of it is decided afterwards, by the variable of the role InstallError. It
    // is left alone when the front end ignores errors. False when any step failed.
    //
    // Where a directory can't be recorded, the records can't be opened, or a volume has too little space,
    // nothing is changed and the variable is set in any case. An exception out of a step leaves the records
    // published and the variable set; one out of the preparation leaves nothing but the variable. `removals`
    // is what the preparation consists of.
    bool run(Report& report, const Preparation& prepare = {},
             const std::vector<ExpectedRemoval>& removals = {});
    // Whether `run` would get beyond its look at directories and free space after these removals, as far as
    // the variables are what they will be then. What it finds is reported.
    bool isPossible(Report& report, const std::vector<ExpectedRemoval>& removals);
    // Adds what `run` will do after its preparation, as far as the variables are what they will be then.
    void plan(OverallProgress& overall);
    // The action log of what `run` changed; empty before, and where nothing was recorded.
    const std::string& publishedLog() const { return publishedLog_; }
    // Whether that log takes an earlier installation back as well, because this one was made over it.
    bool continuesEarlierRecords() const { return continuesEarlierRecords_; }

    // Runs the actions of a container of the description; one that fails is only logged. Throws
    // InstallerError when a file can't be taken out of the cabinet.
    void runActions(std::string_view container, Report& report);

    // The last work, once for this object; later calls do nothing: the actions of PostInstall, the variables
    // of the published action log, and, if `leavesConfiguration`, the configuration file that repeats the
    // run, in `directory` (none: it isn't known, which is reported). Actions and a file that fail don't fail
    // the installation. Throws InstallerError when the action log can't be brought up to date; no
    // configuration is written then.
    void finish(Report& report, bool leavesConfiguration, const std::optional<std::string>& directory);

    // Writes one entry of the cabinet to a file; as AliasExtractor.
    std::string extractAlias(std::string_view alias, std::string_view directory, bool expandVariablesInFile,
                             bool stripExeExtension);

private:
    // The status texts of the phases that failed.
    using FailedPhases = std::vector<std::string_view>;

    bool run(ChangeJob& job, InstallationRecords& records, const Preparation& prepare,
             const std::vector<ExpectedRemoval>& removals);
    bool refuse();
    void runPreparation(const Preparation& prepare, InstallationRecords& records);
    bool makeChanges(ChangeJob& job, InstallationRecords& records);
    FailedPhases runPhases(ChangeJob& job);
    bool publish(InstallationRecords& records, Report& report);
    void reportEnd(Report& report, bool failed);
    void reportErrors(Report& report, const FailedPhases& failedPhases);
    void setErrorVariable();
    void updateActionLog(Report& report);
    void exportConfiguration(Report& report, const std::optional<std::string>& directory);

    EngineParts parts_;
    InstallationMark* mark_;
    PFileConsole logFile_;
    ActionLogWriter log_;
    std::string publishedLog_;
    bool continuesEarlierRecords_ = false;
    bool isFinished_ = false;
};
