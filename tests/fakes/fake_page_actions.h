#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "contracts/page_actions.h"
#include "description/wizard_words.h"

// The work behind pages, recorded instead of done: calls are "installProduct", "runActions(PostInstall)" and
// so on. Questions are answered and not recorded.
class FakePageActions : public PageActions {
public:
    std::vector<std::string> calls;
    bool actionLogSession = false;
    // The names of the operations that fail.
    std::set<std::string> failing;
    // The programs to watch.
    std::vector<WatchedProgram> programs;
    // What a page finds to remove, and whether any of it is still installed later.
    std::vector<ExternalProduct> products;
    bool productIsLeft = false;
    bool removalWasEnded = false;  // what the question for that gave after the call
    // The lists that were asked about, for isAnyInstalled.
    std::vector<std::vector<ExternalProduct>> askedProducts;
    // Called after the recording of each call, with its text.
    std::function<void(const std::string& call)> onCall;

    WizardWords wizardWords;

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    const WizardWords& words() const override { return wizardWords; }
    bool isActionLogSession() override { return actionLogSession; }
    void normalizeDirectoryFields() override { record("normalizeDirectoryFields"); }
    bool installProduct(InstallerUI&) override { return answer("installProduct"); }
    bool prepareUninstall(InstallerUI&) override { return answer("prepareUninstall"); }
    bool uninstallCurrentProduct(InstallerUI&, const std::function<bool()>& isToEnd) override {
        const bool isDone = answer("uninstallCurrentProduct");
        return isDone && !isToEnd();
    }
    bool uninstallPrevious(InstallerUI&) override { return answer("uninstallPrevious"); }
    bool revertInstallation(InstallerUI&) override { return answer("revertInstallation"); }
    bool revertUninstallation(InstallerUI&) override { return answer("revertUninstallation"); }
    bool registerApplication(InstallerUI& /*ui*/) override { return answer("registerApplication"); }
    bool unregisterApplication(InstallerUI& /*ui*/) override { return answer("unregisterApplication"); }
    void runActions(std::string_view section, InstallerUI&) override {
        record("runActions(" + std::string(section) + ")");
    }
    void finishInstallation(InstallerUI&) override { record("finishInstallation"); }
    void prepareProgramWatch(std::int32_t page, InstallerUI&) override {
        record("prepareProgramWatch(" + std::to_string(page) + ")");
    }
    std::vector<WatchedProgram> watchPrograms() override { return programs; }
    std::vector<ExternalProduct> removeExternalProducts(std::int32_t page, InstallerUI&,
                                                        const std::function<void()>& onFirst,
                                                        const std::function<bool()>& isToEnd) override {
        if (!products.empty()) {
            onFirst();
        }
        record("removeExternalProducts(" + std::to_string(page) + ")");
        removalWasEnded = isToEnd();
        return products;
    }
    bool isAnyInstalled(const std::vector<ExternalProduct>& asked) override {
        askedProducts.push_back(asked);
        return productIsLeft && !asked.empty();
    }

private:
    void record(const std::string& call) {
        calls.push_back(call);
        if (onCall) {
            onCall(call);
        }
    }
    bool answer(const std::string& name) {
        record(name);
        return !failing.contains(name);
    }
};
