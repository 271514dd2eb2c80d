#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engine/file_installer.h"
#include "engine/report.h"
#include "support/debug_log.h"

class ControlVariables;
class InstallationRecords;
class InstallerUI;
class VariableStore;

// A step of an installation behind its files.
struct InstallationPhase {
    std::string statusText;
    std::function<int(InstallerUI* ui)> run;  // 0 for success
};

// Installs the product: files, then the phases, then the publishing of what was recorded. Every error is
// collected and the job runs to its end; what becomes of it is decided afterwards, by the variable of the
// role InstallError.
class ProductInstaller {
public:
    struct Parts {
        FileInstaller& files;
        InstallationRecords& records;
        VariableStore& variables;
        const ControlVariables& controls;
    };

    ProductInstaller(Parts parts, DebugLog debugLog) : parts_(parts), debugLog_(debugLog) {}

    // 0, or -1 when any step failed; with temporary files that can't be had nothing is changed. The variable
    // is left alone when the front end ignores errors.
    int installProduct(Report& report, const std::vector<InstallationPhase>& phases,
                       const FileInstaller::Hook& afterFileInstalled);

private:
    std::vector<const InstallationPhase*> runPhases(Report& report,
                                                    const std::vector<InstallationPhase>& phases);
    void reportEnd(Report& report, bool failed);
    void reportErrors(Report& report, const std::vector<const InstallationPhase*>& failedPhases);

    Parts parts_;
    DebugLog debugLog_;
};
