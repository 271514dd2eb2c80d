#include "ui/running_apps_page.h"

#include <algorithm>
#include <string>
#include <vector>

#include "contracts/page_actions.h"
#include "description/wizard_words.h"
#include "ui/page_visit.h"

namespace {

void addLine(InstallerUI& ui, const std::string& line, bool flushNow) {
    ui.addFileLine(line.c_str(), flushNow);
}

}  // namespace

// Open when none of the programs runs. Front ends ask it many times a second, so the list on screen is made
// anew only when it differs from what runs.
class RunningAppsGate : public PageGate {
public:
    explicit RunningAppsGate(PageActions& actions) : actions_(actions) {}

    // For other programs than before, none of which is on screen.
    void reset() { shown_.clear(); }

    bool isOpen(InstallerUI& ui) override {
        const std::vector<WatchedProgram> programs = actions_.watchPrograms();
        std::vector<bool> running;
        running.reserve(programs.size());
        for (const WatchedProgram& program : programs) {
            running.push_back(program.isRunning);
        }
        shown_.resize(programs.size());
        if (running != shown_) {
            show(programs, ui);
            shown_ = running;
            if (ui.isQuiet()) {
                say(programs, ui);
            }
        }
        return std::find(running.begin(), running.end(), true) == running.end();
    }

private:
    static void show(const std::vector<WatchedProgram>& programs, InstallerUI& ui) {
        ui.clearFileLines();
        for (const WatchedProgram& program : programs) {
            if (program.isRunning) {
                addLine(ui, program.name, false);
            }
        }
        ui.addFileLine(nullptr, true);
    }

    // Where no list is shown, the user has to know all the same what the page waits for; once is enough.
    void say(const std::vector<WatchedProgram>& programs, InstallerUI& ui) {
        std::string names;
        for (const WatchedProgram& program : programs) {
            if (program.isRunning) {
                names += (names.empty() ? "" : ", ") + program.name;
            }
        }
        if (!names.empty() && names != said_) {
            ui.addMessage(actions_.words().text("StillRunning", {names}));
        }
        said_ = names;
    }

    PageActions& actions_;
    std::vector<bool> shown_;  // by the place of the program
    std::string said_;
};

void RunningAppsPage::enter(PageVisit& visit) {
    if (gate_ == nullptr) {
        gate_ = std::make_shared<RunningAppsGate>(actions_);
    }
    gate_->reset();
    actions_.prepareProgramWatch(visit.page.node, visit.ui);
    if (!gate_->isOpen(visit.ui)) {
        // A window shows the state of the page by itself.
        if (visit.ui.isGraphical() == 0) {
            addLine(visit.ui, actions_.words().text("ProgramsRunning"), true);
        }
        debugLog_.line("Running applications found");
        visit.hold();
    }
    visit.shown = true;
    visit.page.gate = gate_;
}
