#include "ui/navigator.h"

#include <cstddef>

#include "description/dialog_model.h"
#include "ui/navigation_state.h"
#include "ui/page_conditions.h"
#include "ui/page_turner.h"
#include "ui/task_states.h"

namespace {

bool hasSubDialogs(const DialogDesc* page) {
    return page != nullptr && (page->special & kDialogHasSubDialogs) != 0;
}

bool isFinish(const DialogDesc* page) {
    return page != nullptr && (page->special & kDialogFinish) != 0;
}

// A frame without sub-dialogs takes a step away, since there is no page to enter.
int stepsOf(Onward onward) {
    return static_cast<int>(onward);
}

}  // namespace

Navigator::Navigator(NavigationState& state, DialogModel& dialogs, PageConditions& conditions,
                     TaskStates& tasks, PageTurner& pages, DebugLog debugLog)
    : state_(state),
      dialogs_(dialogs),
      conditions_(conditions),
      tasks_(tasks),
      pages_(pages),
      debugLog_(debugLog) {}

bool Navigator::goForward(InstallerUI& ui, int count) {
    if (isLastPage()) {
        state_.finished = true;
        return true;
    }
    if (!passesGates(ui)) {
        return false;
    }
    Position position{state_.currentDialog, state_.currentSubdialog};
    while (count > 0 && !state_.finished && !state_.cancelled) {
        const Step step = stepForward(position, count, ui);
        if (step == Step::kStopped) {
            break;
        }
        if (step == Step::kEntered) {
            if (!passesGatesOnArrival(position, count, ui)) {
                break;
            }
            --count;
        }
    }
    return true;
}

// The gate is asked in any case, so that what it shows is up to date.
bool Navigator::isHeldBy(DialogDesc* page, InstallerUI& ui) {
    return page != nullptr && !conditions_.isOpen(*page, ui) && !page->has(kDialogWeakCondition);
}

// A page with a closed gate is entered again, which may open it.
bool Navigator::passesGates(InstallerUI& ui) {
    DialogDesc* dialog = frameAt(state_.currentDialog);
    if (isHeldBy(dialog, ui)) {
        pages_.goToDialog(state_.currentDialog, ui);
        if (!conditions_.isOpen(*dialog, ui)) {
            return false;
        }
    }
    if (!hasSubDialogs(dialog) || state_.currentSubdialog < 0) {
        return true;
    }
    DialogDesc* sub = dialogs_.getDialog(state_.currentDialog, state_.currentSubdialog);
    if (isHeldBy(sub, ui)) {
        pages_.goToSubdialog(state_.currentDialog, state_.currentSubdialog, ui);
        return conditions_.isOpen(*sub, ui);
    }
    return true;
}

Navigator::Step Navigator::stepForward(Position& position, int& count, InstallerUI& ui) {
    const bool isFrame = hasSubDialogs(frameAt(position.dialog));
    const int subCount = subDialogCount(position.dialog);
    if (position.dialog >= dialogs_.getDialogCount() || (isFrame && position.sub >= subCount)) {
        return fail("next");
    }
    if (isLastPage()) {
        state_.finished = true;
        return Step::kStopped;
    }
    return isFrame && position.sub < subCount - 1 ? enterNextSubdialog(position, count, ui)
                                                  : enterNextDialog(position, count, ui);
}

Navigator::Step Navigator::enterNextSubdialog(Position& position, int& count, InstallerUI& ui) {
    ++position.sub;
    if (!conditions_.isVisible(position.dialog, position.sub)) {
        return Step::kHidden;
    }
    tasks_.update(ui, state_.currentDialog, state_.currentSubdialog,
                  state_.lastWorkFailed ? kTaskFinishedWithError : kTaskFinished);
    count += stepsOf(pages_.goToSubdialog(position.dialog, position.sub, ui));
    return Step::kEntered;
}

Navigator::Step Navigator::enterNextDialog(Position& position, int& count, InstallerUI& ui) {
    ++position.dialog;
    position.sub = 0;
    if (position.dialog >= dialogs_.getDialogCount()) {
        return fail("next");
    }
    if (!conditions_.isVisible(position.dialog, -1)) {
        position.sub = subDialogCount(position.dialog) - 1;  // its sub-dialogs are hidden with it
        return Step::kHidden;
    }
    count += stepsOf(pages_.goToDialog(position.dialog, ui));
    if (hasSubDialogs(frameAt(position.dialog)) && !state_.cancelled) {
        // The first page of a frame is shown whatever its condition says.
        count += stepsOf(pages_.goToSubdialog(position.dialog, 0, ui));
    }
    return Step::kEntered;
}

// False when the walk has to wait on this page. An open gate doesn't count as a step of its own.
bool Navigator::passesGatesOnArrival(const Position& position, int& count, InstallerUI& ui) {
    DialogDesc* dialog = frameAt(position.dialog);
    DialogDesc* sub = hasSubDialogs(dialog) ? dialogs_.getDialog(position.dialog, position.sub) : nullptr;
    for (DialogDesc* page : {dialog, sub}) {
        if (page == nullptr || page->gate == nullptr) {
            continue;
        }
        if (!conditions_.isOpen(*page, ui)) {
            return false;
        }
        ++count;
    }
    return true;
}

void Navigator::goBack(InstallerUI& ui, int count) {
    Position position{state_.currentDialog, state_.currentSubdialog};
    while (count > 0 && !state_.cancelled) {
        const int from = position.dialog;
        const Step step = stepBack(position, ui);
        if (step == Step::kStopped) {
            break;
        }
        if (step == Step::kEntered) {
            if (count == 1) {
                enterGoingBack(position, position.dialog != from, ui);
            }
            --count;
        }
    }
}

Navigator::Step Navigator::stepBack(Position& position, InstallerUI& ui) {
    const bool isFrame = hasSubDialogs(frameAt(position.dialog));
    if (position.dialog < 0 || (isFrame && position.sub < 0)) {
        return fail("back");
    }
    return isFrame && position.sub > 0 ? stepBackInside(position, ui) : stepBackOver(position);
}

Navigator::Step Navigator::stepBackInside(Position& position, InstallerUI& ui) {
    tasks_.update(ui, position.dialog, position.sub, kTaskNotReached);
    --position.sub;
    return conditions_.isVisible(position.dialog, position.sub) ? Step::kEntered : Step::kHidden;
}

Navigator::Step Navigator::stepBackOver(Position& position) {
    --position.dialog;
    if (position.dialog < 0) {
        return fail("back");
    }
    if (!conditions_.isVisible(position.dialog, -1)) {
        position.sub = 0;  // its sub-dialogs are hidden with it
        return Step::kHidden;
    }
    position.sub = subDialogCount(position.dialog) - 1;
    return position.sub < 0 || conditions_.isVisible(position.dialog, position.sub) ? Step::kEntered
                                                                                    : Step::kHidden;
}

void Navigator::enterGoingBack(const Position& position, bool isOtherDialog, InstallerUI& ui) {
    if (isOtherDialog) {
        pages_.goToDialog(position.dialog, ui);
    }
    if (position.sub >= 0 && !state_.cancelled) {
        pages_.goToSubdialog(position.dialog, position.sub, ui);
    }
}

Navigator::Step Navigator::fail(const char* direction) {
    debugLog_.print("ERROR: Bad dialog %s shifting. Current dialog: %d, current subdialog: %d", direction,
                    static_cast<int>(state_.currentDialog), static_cast<int>(state_.currentSubdialog));
    state_.endWork(false);
    state_.finished = true;
    return Step::kStopped;
}

DialogDesc* Navigator::frameAt(int dialog) {
    return dialogs_.getDialog(dialog, -1);
}

// 0 for a dialog that isn't a frame around sub-dialogs.
int Navigator::subDialogCount(int dialog) {
    const DialogDesc* frame = frameAt(dialog);
    return hasSubDialogs(frame) ? static_cast<int>(frame->subDialogs.size()) : 0;
}

bool Navigator::isLastPage() {
    const DialogDesc* dialog = frameAt(state_.currentDialog);
    return isFinish(dialog) || (hasSubDialogs(dialog) &&
                                isFinish(dialogs_.getDialog(state_.currentDialog, state_.currentSubdialog)));
}
