#include "ui/page_entry.h"

#include <string>

#include "contracts/page_actions.h"
#include "description/wizard_words.h"
#include "ui/control_values.h"
#include "ui/triggers.h"

namespace {

constexpr std::size_t kLinesPerFlush = 32;

}  // namespace

const PageEntry::NamedPage PageEntry::kPages[] = {
    {"Uninstall", &PageEntry::uninstallPrevious},
    {"CopyProgress", &PageEntry::copyFiles},
    {"RevertInstallation", &PageEntry::revertInstallation},
    {"RevertUninstallation", &PageEntry::revertUninstallation},
    {"RegisterApplication", &PageEntry::registerApplication},
    {"UnregisterApplication", &PageEntry::unregisterApplication},
    {"PreUninstall", &PageEntry::prepareUninstall},
    {"PostInstall", &PageEntry::finishInstallation},
    {"RunningApps", &PageEntry::checkRunningApps},
    {"ExternalUninstall", &PageEntry::uninstallExternals},
    {"Finish", &PageEntry::showErrorSummary},
    {"BadFinish", &PageEntry::showErrorSummary},
};

std::vector<std::string_view> PageEntry::pageNames() {
    std::vector<std::string_view> names;
    for (const NamedPage& page : kPages) {
        names.push_back(page.name);
    }
    return names;
}

PageEntry::PageEntry(ControlValues& controls, Triggers& triggers, PageActions& actions, DebugLog debugLog)
    : controls_(controls),
      triggers_(triggers),
      actions_(actions),
      runningApps_(actions, debugLog),
      externalUninstall_(actions),
      debugLog_(debugLog) {}

Onward PageEntry::enterPage(PageVisit& visit) {
    debugLog_.print("Setting dialog \"%s\" (%d, %d)", visit.page.name.c_str(), visit.dialog, visit.sub);
    controls_.set(ControlVariable::kDlgCondition, "0");
    const bool isBusy = visit.page.has(kDialogBusy);
    const WorkStateGuard guard(visit.state, kUiBusy);
    if (isBusy) {
        evaluateWhileBusy(visit);
    }
    enterByName(visit);
    visit.showOnce();
    // The work of the page may have set another state, which stays.
    if (isBusy && visit.state.uiState == kUiBusy) {
        visit.setUiState(kUiReady);
    }
    return visit.page.has(kDialogAutoNext) || visit.oneMoreStep ? Onward::kGoOn : Onward::kWait;
}

void PageEntry::evaluateWhileBusy(PageVisit& visit) {
    visit.setUiState(kUiBusy);
    visit.show();
    triggers_.run(visit.ui, kTriggerOnDlgEval, visit.dialog, visit.sub);
}

void PageEntry::enterByName(PageVisit& visit) {
    for (const NamedPage& page : kPages) {
        if (visit.page.name.view() == page.name) {
            (this->*page.handler)(visit);
            return;
        }
    }
}

// Does long work while the front end shows that it runs. `work` gives true for success.
template <typename Work>
void PageEntry::work(PageVisit& visit, Work&& work) {
    visit.showOnce();
    const WorkStateGuard guard(visit.state, kUiInstallationRunning);
    visit.setUiState(kUiInstallationRunning);
    visit.state.endWork(work());
    visit.setUiState(kUiReady);
}

void PageEntry::uninstallPrevious(PageVisit& visit) {
    work(visit, [&] {
        const bool isDone = actions_.uninstallPrevious(visit.ui);
        if (!isDone) {
            controls_.set(ControlVariable::kUninstallError, "1");
        }
        return isDone;
    });
}

void PageEntry::copyFiles(PageVisit& visit) {
    visit.state.mainWorkTried = true;
    work(visit, [&] {
        actions_.normalizeDirectoryFields();
        return actions_.isActionLogSession() ? uninstall(visit) : actions_.installProduct(visit.ui);
    });
}

bool PageEntry::uninstall(PageVisit& visit) {
    return actions_.uninstallCurrentProduct(visit.ui, [&visit] { return visit.state.cancelled.load(); });
}

void PageEntry::revertInstallation(PageVisit& visit) {
    work(visit, [&] { return actions_.revertInstallation(visit.ui); });
}

void PageEntry::revertUninstallation(PageVisit& visit) {
    work(visit, [&] { return actions_.revertUninstallation(visit.ui); });
}

// The two pages of the registration are never shown: they are over before anybody could read them.
void PageEntry::registerApplication(PageVisit& visit) {
    visit.shown = true;
    visit.state.endWork(!actions_.isActionLogSession() && actions_.registerApplication(visit.ui));
}

// Outside an action-log session this is ignored, whereas a registration inside one is a failure.
void PageEntry::unregisterApplication(PageVisit& visit) {
    visit.shown = true;
    if (actions_.isActionLogSession()) {
        visit.state.endWork(actions_.unregisterApplication(visit.ui));
    }
}

void PageEntry::prepareUninstall(PageVisit& visit) {
    visit.showOnce();
    visit.state.endWork(actions_.prepareUninstall(visit.ui));
}

void PageEntry::finishInstallation(PageVisit& visit) {
    actions_.finishInstallation(visit.ui);
    visit.state.endWork(true);
    visit.oneMoreStep = true;
}

void PageEntry::checkRunningApps(PageVisit& visit) {
    runningApps_.enter(visit);
}

void PageEntry::uninstallExternals(PageVisit& visit) {
    externalUninstall_.enter(visit);
}

void PageEntry::showErrorSummary(PageVisit& visit) {
    visit.showOnce();
    const std::vector<std::string>* errors = visit.state.errorSummary;
    if (errors == nullptr || errors->empty()) {
        return;
    }
    const std::string title = actions_.words().text(
        actions_.isActionLogSession() ? WordKey("UninstallErrorSummary") : WordKey("ErrorSummary"));
    visit.ui.pumpEvents();
    const auto add = [&visit](const std::string& line, bool flushNow) {
        visit.ui.addFileLine(line.c_str(), flushNow);
    };
    add(title, false);
    for (std::size_t i = 0; i < errors->size(); ++i) {
        visit.ui.pumpEvents();
        add((*errors)[i], i % kLinesPerFlush == 0);
    }
    visit.ui.addFileLine(nullptr, true);
}
