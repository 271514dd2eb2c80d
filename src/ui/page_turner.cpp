#include "ui/page_turner.h"

#include "description/dialog_model.h"
#include "ui/task_states.h"
#include "ui/triggers.h"

PageTurner::PageTurner(NavigationState& state, DialogModel& dialogs, Triggers& triggers, TaskStates& tasks,
                       PageEntry& entry)
    : state_(state), dialogs_(dialogs), triggers_(triggers), tasks_(tasks), entry_(entry) {}

Onward PageTurner::goToDialog(int dialog, InstallerUI& ui) {
    DialogDesc* page = dialogs_.getDialog(dialog, -1);
    if (page == nullptr) {
        return Onward::kNoPage;
    }
    keepElements(ui);
    ui.leaveDialog(state_.currentDialog);
    ui.clearTaskList();
    ui.destroySubPage();
    moveTo(dialog, -1, ui);
    ui.prepareDialog(dialog);
    ui.showDialog(dialog);
    return enter(dialog, -1, *page, ui);
}

Onward PageTurner::goToSubdialog(int dialog, int sub, InstallerUI& ui) {
    DialogDesc* page = sub < 0 ? nullptr : dialogs_.getDialog(dialog, sub);
    if (page == nullptr) {
        return Onward::kNoPage;
    }
    keepElements(ui);
    ui.leaveSubDialog(state_.currentDialog, state_.currentSubdialog);
    moveTo(dialog, sub, ui);
    tasks_.update(ui, dialog, sub, kTaskCurrent);
    ui.prepareSubDialog(dialog, sub);
    ui.showSubDialog(dialog, sub);
    return enter(dialog, sub, *page, ui);
}

void PageTurner::keepElements(InstallerUI& ui) {
    const DialogDesc* page = dialogs_.getDialog(state_.currentDialog, state_.currentSubdialog);
    if (page == nullptr) {
        return;
    }
    for (const std::string& name : page->retain) {
        ui.keepElement(name.c_str());
    }
}

// The triggers of the old page run at the old position, those of the new page at the new one.
void PageTurner::moveTo(int dialog, int sub, InstallerUI& ui) {
    triggers_.run(ui, kTriggerOnEnd, state_.currentDialog, state_.currentSubdialog);
    state_.currentDialog = dialog;
    state_.currentSubdialog = sub;
    triggers_.run(ui, kTriggerOnStart, dialog, sub);
}

Onward PageTurner::enter(int dialog, int sub, DialogDesc& page, InstallerUI& ui) {
    if (state_.cancelled) {
        return Onward::kWait;
    }
    PageVisit visit{dialog, sub, ui, page, state_};
    return entry_.enterPage(visit);
}
