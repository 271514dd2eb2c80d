#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "description/dlg_condition.h"
#include "support/debug_log.h"

class Expressions;
class PXML;
class PageActions;
class SystemOperations;
struct PageVisit;

// The page that holds the walk while programs run that must not run. It may stop some of them first.
class RunningAppsPage {
public:
    // Everything is borrowed;
    RunningAppsPage(const PXML& description, Expressions& expressions, PageActions& actions,
                    SystemOperations& system, DebugLog debugLog);

    // Carries out the page's elements and gives the page its gate, which all pages of this kind share.
    void enter(PageVisit& visit);

private:
    void carryOut(std::int32_t node, PageVisit& visit);
    std::string directoryOf(std::int32_t node);

    const PXML& description_;
    Expressions& expressions_;
    PageActions& actions_;
    SystemOperations& system_;
    DebugLog debugLog_;
    std::shared_ptr<RunningAppsCondition> condition_;
};
