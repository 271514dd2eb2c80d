#pragma once

class PageActions;
struct PageVisit;

// The page that removes products of other installers, and holds the walk while any is left.
class ExternalUninstallPage {
public:
    // `actions` outlives this object.
    explicit ExternalUninstallPage(PageActions& actions) : actions_(actions) {}

    // The first time for a page also uninstalls what its elements name, and gives the page its gate.
    void enter(PageVisit& visit);

private:
    void uninstallAll(PageVisit& visit);

    PageActions& actions_;
};
