#pragma once

#include <cstdint>
#include <string>
#include <vector>

class ExternalInstallationCondition;
class Expressions;
class PXML;
class PageActions;
class SystemOperations;
struct PageVisit;

// The page that removes applications of other installers, and holds the walk while any is left.
class ExternalUninstallPage {
public:
    // Everything is borrowed.
    ExternalUninstallPage(const PXML& description, Expressions& expressions, PageActions& actions,
                          SystemOperations& system);

    // The first time for a page also uninstalls what its elements name, and gives the page its gate.
    void enter(PageVisit& visit);

private:
    struct Application {
        const char* name = nullptr;
        const char* publisher = nullptr;
        bool isPartOfName = false;
        bool in32BitView = false;
        std::string arguments;
    };

    void uninstallAll(PageVisit& visit);
    Application read(std::int32_t node);
    std::string expand(const char* text);
    std::vector<std::string> findInstalled(const Application& application);
    void uninstall(const std::string& name, const Application& application, PageVisit& visit);

    const PXML& description_;
    Expressions& expressions_;
    PageActions& actions_;
    SystemOperations& system_;
};
