#include "ui/external_uninstall_page.h"

#include <memory>
#include <utility>
#include <vector>

#include "contracts/page_actions.h"
#include "ui/page_visit.h"

namespace {

// Open when none of the products is installed any more.
class ExternalProductsGate : public PageGate {
public:
    explicit ExternalProductsGate(PageActions& actions) : actions_(actions) {}

    // Stays closed from here until the result is known.
    void beginRemoval() { isRemoving_ = true; }
    void endRemoval(std::vector<ExternalProduct> products) {
        products_ = std::move(products);
        isRemoving_ = false;
    }

    bool isOpen(InstallerUI&) override { return !isRemoving_ && !actions_.isAnyInstalled(products_); }

private:
    PageActions& actions_;
    std::vector<ExternalProduct> products_;
    bool isRemoving_ = false;
};

}  // namespace

void ExternalUninstallPage::enter(PageVisit& visit) {
    if (visit.page.gate == nullptr) {
        uninstallAll(visit);
    }
    if (!visit.page.gate->isOpen(visit.ui)) {
        visit.hold();
    }
    visit.shown = true;
}

// The gate exists while the uninstallers run, because the front end asks for it meanwhile.
void ExternalUninstallPage::uninstallAll(PageVisit& visit) {
    const auto gate = std::make_shared<ExternalProductsGate>(actions_);
    visit.page.gate = gate;
    const auto onFirst = [&] {
        gate->beginRemoval();
        visit.hold();
    };
    const auto isToEnd = [&visit] { return visit.state.cancelled.load(); };
    gate->endRemoval(actions_.removeExternalProducts(visit.page.node, visit.ui, onFirst, isToEnd));
}
