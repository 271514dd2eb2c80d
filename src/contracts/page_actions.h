#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class InstallerUI;

// A program that must not run while a page is passed.
struct WatchedProgram {
    std::string name;
    bool isRunning = false;
};

// The products of other installers that a page found, for looking at them again later.
struct ExternalProductList {
    std::vector<std::string> names;
    bool in32BitView = false;  // where to look for all of them
};

// The work behind the pages with reserved names: the walk of the dialogs asks, the session answers. Results
// are true for success unless told otherwise. A `page` is the index of the page's element in the description.
// Session thread only.
class PageActions {
public:
    virtual ~PageActions() = default;

    virtual bool isActionLogSession() = 0;
    // Cleans the values of all directory fields; runs before files are installed or removed.
    virtual void normalizeDirectoryFields() = 0;
    virtual bool installProduct(InstallerUI& ui) = 0;
    // The actions before an uninstallation; they run once in a session.
    virtual bool prepareUninstall(InstallerUI& ui) = 0;
    virtual bool uninstallCurrentProduct(InstallerUI& ui) = 0;
    virtual bool uninstallPrevious(InstallerUI& ui) = 0;
    virtual bool revertInstallation(InstallerUI& ui) = 0;
    virtual bool revertUninstallation(InstallerUI& ui) = 0;
    virtual bool registerApplication() = 0;
    virtual bool unregisterApplication() = 0;
    // Runs an action section of the description by its name. Failures are reported and don't stop the walk.
    virtual void runActions(std::string_view section, InstallerUI& ui) = 0;
    // The actions and exports after an installation, once in a session. Failures don't stop the walk.
    virtual void finishInstallation(InstallerUI& ui) = 0;

    // Carries out the elements of a page of running programs: stops programs, runs action sections and notes
    // which programs to watch from now on. What an earlier page noted is forgotten.
    virtual void prepareProgramWatch(std::int32_t page, InstallerUI& ui) = 0;
    // The programs to watch, in their order, and which of them run now.
    virtual std::vector<WatchedProgram> watchPrograms() = 0;

    // Uninstalls every installed product that the elements of a page name, and waits for each uninstaller.
    // `onFirst` is called once before the first of them. A product that stays is no failure here: the page
    // asks isAnyInstalled later.
    virtual ExternalProductList removeExternalProducts(std::int32_t page, InstallerUI& ui,
                                                       const std::function<void()>& onFirst) = 0;
    virtual bool isAnyInstalled(const ExternalProductList& products) = 0;
};
