#include "engine/product_installer.h"

#include "description/control_variables.h"
#include "description/variable_store.h"
#include "engine/installation_records.h"
#include "support/debug_log.h"

int ProductInstaller::installProduct(Report& report, const std::vector<InstallationPhase>& phases,
                                     const FileInstaller::Hook& afterFileInstalled) {
    if (!parts_.records.open()) {
        return -1;
    }
    report.begin();
    bool failed = !parts_.files.installFiles(parts_.records.backup(), report, afterFileInstalled);
    const auto failedPhases = runPhases(report, phases);
    // Published ahead of the report, so that the report is true.
    if (!parts_.records.publish()) {
        report.addError("FAILED to write the install log or the backup file");
        failed = true;
    }
    failed = failed || !failedPhases.empty();
    reportEnd(report, failed);
    if (failed && !report.ignoresErrors()) {
        reportErrors(report, failedPhases);
    }
    return failed ? -1 : 0;
}

std::vector<const InstallationPhase*> ProductInstaller::runPhases(
    Report& report, const std::vector<InstallationPhase>& phases) {
    std::vector<const InstallationPhase*> failed;
    for (const InstallationPhase& phase : phases) {
        report.setStatus(phase.statusText.c_str());
        if (phase.run(report.ui()) != 0) {
            failed.push_back(&phase);
        }
    }
    return failed;
}

void ProductInstaller::reportEnd(Report& report, bool failed) {
    report.setProgress(100);
    report.end();
    report.flushLines();
    report.setStatus(failed ? "There were errors during the installation."
                            : "The installation was successful.");
}

void ProductInstaller::reportErrors(Report& report,
                                    const std::vector<const InstallationPhase*>& failedPhases) {
    debugLog_.print("WARNING: An error ocurred during installation");
    for (const InstallationPhase* phase : failedPhases) {
        debugLog_.print("ERROR: Encountered an error during %s", phase->statusText.c_str());
        report.addError("Error during: " + phase->statusText);
    }
    const char* variable = parts_.controls.nameOf(ControlVariable::kInstallError);
    if (variable[0] != '\0') {
        parts_.variables.setVariable(variable, "1");
    }
    report.showErrors("Encountered errors during installation:");
}
