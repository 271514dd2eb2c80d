#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class InstallerUI;
class WizardWords;

// A program that must not be running when the user passes a page.
struct WatchedProgram {
    std::string name;
    bool isRunning = false;
};

// A product of another installer that a page found, so that it can be looked for again.
struct ExternalProduct {
    std::string name;
    bool in32BitView = false;  // where it is registered
};

// The work of the pages with reserved names: the dialog walk asks for it, the session does it. Results are
// true for success unless stated otherwise. A `page` is the index of the page's element in the description.
// Session thread only.
class PageActions {
public:
    virtual ~PageActions() = default;

    virtual bool isActionLogSession() = 0;
    // Those of the description; they outlive the pages.
    virtual const WizardWords& words() const = 0;
    // Cleans the values of all directory fields; runs before files are installed or removed.
    virtual void normalizeDirectoryFields() = 0;
    virtual bool installProduct(InstallerUI& ui) = 0;
    // The actions before an uninstallation; they run once in a session.
    virtual bool prepareUninstall(InstallerUI& ui) = 0;
    // Ends at the next record, as a failure, when `isToEnd` becomes true.
    virtual bool uninstallCurrentProduct(InstallerUI& ui, const std::function<bool()>& isToEnd) = 0;
    virtual bool uninstallPrevious(InstallerUI& ui) = 0;
    virtual bool revertInstallation(InstallerUI& ui) = 0;
    virtual bool revertUninstallation(InstallerUI& ui) = 0;
    virtual bool registerApplication(InstallerUI& ui) = 0;
    // The entry in the list of installed applications goes with the end of a clean uninstallation: at once if
    // that was before, otherwise then. After a failed one it stays, which is a failure.
    virtual bool unregisterApplication(InstallerUI& ui) = 0;
    // Runs an action section of the description by its name. Failures are reported and don't stop the walk.
    virtual void runActions(std::string_view section, InstallerUI& ui) = 0;
    // The actions and exports after an installation, once in a session. Failures don't stop the walk.
    virtual void finishInstallation(InstallerUI& ui) = 0;

    // Carries out the elements of a page of running programs: stops programs, runs action sections and
    // remembers which programs to watch from now on, instead of those of an earlier page.
    virtual void prepareProgramWatch(std::int32_t page, InstallerUI& ui) = 0;
    // The programs to watch, in order, and whether each is running now.
    virtual std::vector<WatchedProgram> watchPrograms() = 0;

    // Uninstalls every installed product that the elements of a page name, and waits for each uninstaller;
    // gives those that it found. `onFirst` is called once before the first of them. A product that stays
    // installed isn't a failure here: the page calls isAnyInstalled later. When `isToEnd` becomes true, the
    // running uninstaller isn't waited for any longer, and no other is started.
    virtual std::vector<ExternalProduct> removeExternalProducts(std::int32_t page, InstallerUI& ui,
                                                                const std::function<void()>& onFirst,
                                                                const std::function<bool()>& isToEnd) = 0;
    virtual bool isAnyInstalled(const std::vector<ExternalProduct>& products) = 0;
};
