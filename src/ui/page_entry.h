#pragma once

#include <string_view>
#include <vector>

#include "support/debug_log.h"
#include "ui/external_uninstall_page.h"
#include "ui/page_visit.h"
#include "ui/running_apps_page.h"

class ControlValues;
class PageActions;
class Triggers;

// What the entry to a page means for the walk. The numbers are those that InstallExchangeInfo::goToDialog
// gives, and the steps that the walk still takes grow by them.
enum class Onward : int {
    kNoPage = -1,
    kWait = 0,
    kGoOn = 1,  // by itself
};

// Does what the name of a page stands for when the page is entered: a page named "CopyProgress", for
// instance, is what makes the engine install.
class PageEntry {
public:
    // All arguments outlive this object.
    PageEntry(ControlValues& controls, Triggers& triggers, PageActions& actions, DebugLog debugLog);

    // Works on `visit`, whose page is the current one.
    Onward enterPage(PageVisit& visit);

    // The names that stand for something, each once.
    static std::vector<std::string_view> pageNames();

private:
    using Handler = void (PageEntry::*)(PageVisit& visit);
    struct NamedPage {
        std::string_view name;
        Handler handler;
    };
    static const NamedPage kPages[];

    void enterByName(PageVisit& visit);
    void evaluateWhileBusy(PageVisit& visit);

    template <typename Work>
    void work(PageVisit& visit, Work&& work);
    void uninstallPrevious(PageVisit& visit);
    void copyFiles(PageVisit& visit);
    bool uninstall(PageVisit& visit);
    void revertInstallation(PageVisit& visit);
    void revertUninstallation(PageVisit& visit);
    void registerApplication(PageVisit& visit);
    void unregisterApplication(PageVisit& visit);
    void prepareUninstall(PageVisit& visit);
    void finishInstallation(PageVisit& visit);
    void checkRunningApps(PageVisit& visit);
    void uninstallExternals(PageVisit& visit);
    void showErrorSummary(PageVisit& visit);

    ControlValues& controls_;
    Triggers& triggers_;
    PageActions& actions_;
    RunningAppsPage runningApps_;
    ExternalUninstallPage externalUninstall_;
    DebugLog debugLog_;
};
