#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fakes/fake_engine.h"
#include "fakes/recording_toolkit.h"
#include "ui/gui/page_host.h"

// A session with the answers that the parts of a page ask for.
class PageEngine : public FakeEngine {
public:
    bool themed = false;
    bool uninstalling = false;
    std::map<int, std::int32_t> themeColours;
    std::map<std::pair<int, int>, std::pair<std::int32_t, std::int32_t>> colours;  // background, foreground
    std::map<std::string, std::uint32_t> refreshFlags;
    std::map<std::string, std::string> files;  // by alias
    std::function<void(const std::string&)> onAction;
    std::function<void()> onTriggers;
    std::string helpUrl;
    bool hasBrowser = true;

    bool isThemed() override { return themed; }
    bool isUninstalling() override { return uninstalling; }
    std::int32_t getThemeColour(int index) override {
        const auto found = themeColours.find(index);
        return found == themeColours.end() ? -1 : found->second;
    }
    void getDialogColours(int dialog, int sub, std::int32_t& outBackground,
                          std::int32_t& outForeground) override {
        const auto found = colours.find({dialog, sub});
        outBackground = found == colours.end() ? -1 : found->second.first;
        outForeground = found == colours.end() ? -1 : found->second.second;
    }
    std::uint32_t getRefreshFlags(const char* variable, int, int) override {
        const auto found = refreshFlags.find(variable);
        return found == refreshFlags.end() ? 0 : found->second;
    }
    int getFilePathByAlias(const char* alias, char* buffer, int size) override {
        const auto found = files.find(alias);
        if (found != files.end()) {
            OUtils::copyText(buffer, found->second.c_str(), size);
        }
        return -1;
    }
    int getInstallHelpUrl(char* buffer, int size) override {
        OUtils::copyText(buffer, helpUrl.c_str(), size);
        return helpUrl.empty() ? -1 : 0;
    }
    bool openInDefaultBrowser(const char* url) override {
        calls.push_back("browse(" + std::string(url) + ")");
        return hasBrowser;
    }
    void performAction(InstallerUI*, const char* text) override {
        calls.push_back("action(" + std::string(text) + ")");
        if (onAction) {
            onAction(text);
        }
    }
    void runTriggers(InstallerUI*, std::uint32_t when, int dialog, int sub) override {
        calls.push_back("triggers(" + std::to_string(when) + "," + std::to_string(dialog) + "," +
                        std::to_string(sub) + ")");
        if (onTriggers) {
            onTriggers();
        }
    }
    void refreshTaskStates(InstallerUI*) override { calls.emplace_back("refreshTaskStates"); }

    // Enters as the walk of a session does, without triggers and work.
    int goToDialog(int dialog, InstallerUI* ui) override {
        calls.push_back("goToDialog(" + std::to_string(dialog) + ")");
        ui->leaveDialog(currentDialog);
        ui->clearTaskList();
        ui->destroySubPage();
        currentDialog = dialog;
        currentSubDialog = -1;
        ui->prepareDialog(dialog);
        ui->showDialog(dialog);
        ui->showPage(dialog, -1, true);
        return onGoToDialog ? onGoToDialog(dialog) : 0;
    }
    int goToSubdialog(int dialog, int sub, InstallerUI* ui) override {
        calls.push_back("goToSubdialog(" + std::to_string(dialog) + "," + std::to_string(sub) + ")");
        ui->leaveSubDialog(currentDialog, currentSubDialog);
        currentDialog = dialog;
        currentSubDialog = sub;
        ui->prepareSubDialog(dialog, sub);
        ui->showSubDialog(dialog, sub);
        ui->showPage(dialog, sub, true);
        return 0;
    }
    int count(const std::string& call) const {
        return static_cast<int>(std::count(calls.begin(), calls.end(), call));
    }
};

// A page of 800 by 600 whose parts a test makes by itself.
class PageTest : public testing::Test, public PageHost {
protected:
    PageTest() { window.client = {800, 600}; }

    Toolkit& toolkit() override { return window; }
    InstallExchangeInfo& engine() override { return session; }
    PageGeometry geometry() override { return {fontScale, window.client}; }
    bool isThemed() override { return session.themed; }
    int textHeight() override { return RecordingToolkit::kTextHeight; }
    void choiceChanged(const DialogField&, ControlId control) override { choices.push_back(control); }
    void textChanged(const DialogField&) override { ++textChanges; }

    RecordingToolkit window;
    PageEngine session;
    double fontScale = 1.0;
    std::vector<ControlId> choices;
    int textChanges = 0;
};
