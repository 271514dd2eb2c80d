#pragma once

#include <memory>

#include "support/debug_log.h"

class PageActions;
class RunningAppsGate;
struct PageVisit;

// The page that holds the walk while programs run that must not run. It may stop some of them first.
class RunningAppsPage {
public:
    // `actions` outlives this object.
    RunningAppsPage(PageActions& actions, DebugLog debugLog) : actions_(actions), debugLog_(debugLog) {}

    // Carries out the page's elements and gives the page its gate, which all pages of this kind share.
    void enter(PageVisit& visit);

private:
    PageActions& actions_;
    DebugLog debugLog_;
    std::shared_ptr<RunningAppsGate> gate_;
};
