#include "ui/running_apps_page.h"

#include <vector>

#include "base/text_functions.h"
#include "contracts/page_actions.h"
#include "contracts/system_operations.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "support/debug_log.h"
#include "ui/page_visit.h"

RunningAppsPage::RunningAppsPage(const PXML& description, Expressions& expressions, PageActions& actions,
                                 SystemOperations& system, DebugLog debugLog)
    : description_(description),
      expressions_(expressions),
      actions_(actions),
      system_(system),
      debugLog_(debugLog) {}

void RunningAppsPage::enter(PageVisit& visit) {
    if (condition_ == nullptr) {
        condition_ = std::make_shared<RunningAppsCondition>();
    }
    condition_->clear();
    std::vector<std::int32_t> children;
    description_.listChildren(visit.page.node, children);
    for (const std::int32_t node : children) {
        if (expressions_.evaluateCondition(description_.getAttribute(node, "Condition")) != 0) {
            carryOut(node, visit);
        }
    }
    if (condition_->evaluate(&system_, &visit.ui) == 0) {
        if (visit.ui.isGraphical() == 0) {
            condition_->report(&system_, &visit.ui,
                               "The installation can not continue, because the processes listed above are "
                               "running.");
        }
        debugLog_.print("Running applications found");
        visit.hold();
    }
    visit.shown = true;
    visit.page.condition = condition_;
}

void RunningAppsPage::carryOut(std::int32_t node, PageVisit& visit) {
    const char* name = description_.getName(node);
    const char* text = description_.getText(node);
    if (text == nullptr) {
        return;
    }
    if (OUtils::equalsIgnoreCase(name, "TerminateApp")) {
        const bool isService = OUtils::equalsIgnoreCase(description_.getAttribute(node, "Service"), "true");
        const std::string directory = directoryOf(node);
        actions_.closeApplication(text, isService, directory.empty() ? nullptr : directory.c_str());
    } else if (OUtils::equalsIgnoreCase(name, "TerminateSequence")) {
        actions_.runActions(&visit.ui, text);
    } else if (OUtils::equalsIgnoreCase(name, "TestApp")) {
        condition_->add(text, directoryOf(node).c_str());
    }
}

std::string RunningAppsPage::directoryOf(std::int32_t node) {
    char directory[OUtils::kPathCapacity];
    expressions_.expandVariables(description_.getAttribute(node, "Directory"), directory, sizeof directory,
                                 false);
    return directory;
}
