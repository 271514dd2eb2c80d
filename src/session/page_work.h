#pragma once

#include "contracts/page_actions.h"
#include "engine/file_installer.h"
#include "support/debug_log.h"

class AdditionalActions;
class InstallationFinish;
class PreviousInstallations;
class ProductDescription;
class ProductInstaller;
class SystemChanges;
class Uninstaller;
class SystemModifications;
class SystemOperations;
class VariableStore;
struct DialogDesc;
struct SessionState;

// The session's answers to the pages that stand for work. Work that this version doesn't have is refused: the
// log says so and the result is a failure.
class PageWork : public PageActions {
public:
    struct Parts {
        VariableStore& variables;
        ProductInstaller& installer;
        PreviousInstallations& previous;
        SystemChanges& changes;
        AdditionalActions& actions;
        Uninstaller& uninstaller;
        const ProductDescription& product;
        InstallationFinish& finish;
        SystemOperations& system;
        SystemModifications& modifications;
    };

    PageWork(SessionState& state, Parts parts, FileInstaller::Hook afterFileInstalled);

    bool isActionLogSession() override;
    void normalizeDirectoryFields() override;
    int installProduct(InstallerUI* ui) override;
    int prepareUninstall(InstallerUI* ui) override;
    int uninstallCurrentProduct(InstallerUI* ui) override;
    int uninstallPrevious(InstallerUI* ui) override;
    int revertInstallation(InstallerUI* ui) override;
    int revertUninstallation(InstallerUI* ui) override;
    bool registerApplication() override;
    bool unregisterApplication() override;
    int runActions(InstallerUI* ui, const char* section) override;
    // Throws InstallerError when the published log can't be brought up to date.
    int finishInstallation(InstallerUI* ui) override;
    bool closeApplication(const char* name, bool isService, const char* directory) override;
    bool uninstallApplication(const char* name, const char* arguments, bool in32BitView, bool wait,
                              InstallerUI* ui) override;

private:
    void normalizeFields(DialogDesc& page);
    int refuse(const char* work);

    SessionState& state_;
    Parts parts_;
    FileInstaller::Hook afterFileInstalled_;
    DebugLog debugLog_;
};
