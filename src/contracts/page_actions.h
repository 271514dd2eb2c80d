#pragma once

class InstallerUI;

// The work that pages with reserved names stand for: the navigator asks, the session answers. Results are 0
// for success, anything else for a failure, and end up as the session's last result. `ui` is never null.
class PageActions {
public:
    virtual ~PageActions() = default;

    virtual bool isActionLogSession() = 0;
    // Cleans the values of all directory fields; runs before files are installed or removed.
    virtual void normalizeDirectoryFields() = 0;
    virtual int installProduct(InstallerUI* ui) = 0;
    // The actions ahead of an uninstallation; they run once in a session.
    virtual int prepareUninstall(InstallerUI* ui) = 0;
    virtual int uninstallCurrentProduct(InstallerUI* ui) = 0;
    virtual int uninstallPrevious(InstallerUI* ui) = 0;
    virtual int revertInstallation(InstallerUI* ui) = 0;
    virtual int revertUninstallation(InstallerUI* ui) = 0;
    virtual bool registerApplication() = 0;
    virtual bool unregisterApplication() = 0;
    // An action section of the description by its name.
    virtual int runActions(InstallerUI* ui, const char* section) = 0;
    // The actions and exports after an installation, once in a session. Always 0.
    virtual int finishInstallation(InstallerUI* ui) = 0;
    // Stops a program, or asks a service to stop.
    virtual bool closeApplication(const char* name, bool isService, const char* directory) = 0;
    // Runs another product's uninstaller; `wait` for its end.
    virtual bool uninstallApplication(const char* name, const char* arguments, bool in32BitView, bool wait,
                                      InstallerUI* ui) = 0;
};
