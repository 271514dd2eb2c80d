#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "contracts/page_actions.h"

// The work behind pages, written down instead of done: calls are "installProduct",
// "runActions(PostInstall)" and so on.
class FakePageActions : public PageActions {
public:
    std::vector<std::string> calls;
    bool actionLogSession = false;
    // Answers by the operation's name, "runActions" included; 0 where nothing is set.
    std::map<std::string, int> results;
    bool registrationWorks = true;
    // Called behind the recording of each call, with its text.
    std::function<void(const std::string& call)> onCall;

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    bool isActionLogSession() override { return actionLogSession; }
    void normalizeDirectoryFields() override { record("normalizeDirectoryFields"); }
    int installProduct(InstallerUI*) override { return answer("installProduct"); }
    int prepareUninstall(InstallerUI*) override { return answer("prepareUninstall"); }
    int uninstallCurrentProduct(InstallerUI*) override { return answer("uninstallCurrentProduct"); }
    int uninstallPrevious(InstallerUI*) override { return answer("uninstallPrevious"); }
    int revertInstallation(InstallerUI*) override { return answer("revertInstallation"); }
    int revertUninstallation(InstallerUI*) override { return answer("revertUninstallation"); }
    bool registerApplication() override {
        record("registerApplication");
        return registrationWorks;
    }
    bool unregisterApplication() override {
        record("unregisterApplication");
        return registrationWorks;
    }
    int runActions(InstallerUI*, const char* section) override {
        record("runActions(" + std::string(section) + ")");
        return resultOf("runActions");
    }
    int finishInstallation(InstallerUI*) override { return answer("finishInstallation"); }
    bool closeApplication(const char* name, bool isService, const char* directory) override {
        record("closeApplication(" + std::string(name) + (isService ? ", service, " : ", program, ") +
               textOf(directory) + ")");
        return true;
    }
    bool uninstallApplication(const char* name, const char* arguments, bool in32BitView, bool wait,
                              InstallerUI*) override {
        record("uninstallApplication(" + std::string(name) + ", " + textOf(arguments) +
               (in32BitView ? ", x86" : ", native") + (wait ? ", wait)" : ", no wait)"));
        return true;
    }

private:
    static std::string textOf(const char* text) { return text == nullptr ? "null" : text; }

    void record(const std::string& call) {
        calls.push_back(call);
        if (onCall) {
            onCall(call);
        }
    }
    int resultOf(const std::string& name) const {
        const auto found = results.find(name);
        return found == results.end() ? 0 : found->second;
    }
    int answer(const std::string& name) {
        record(name);
        return resultOf(name);
    }
};
