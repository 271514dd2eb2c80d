#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/debug_log.h"
#include "ui/page_visit.h"

class ControlValues;
class ExternalUninstallPage;
class PageActions;
class RunningAppsPage;
class Triggers;

// Does what the name of a page stands for when the page is entered: a page named "CopyProgress", for
// instance, is what makes the engine install.
class PageEntry {
public:
    // Everything is borrowed;
    PageEntry(ControlValues& controls, Triggers& triggers, PageActions& actions, RunningAppsPage& runningApps,
              ExternalUninstallPage& externalUninstall, DebugLog debugLog);

    // Works on `visit`, whose page is the current one. 1 when the walk goes on by itself, else 0.
    int enterPage(PageVisit& visit);

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
    RunningAppsPage& runningApps_;
    ExternalUninstallPage& externalUninstall_;
    DebugLog debugLog_;
};
