#pragma once

#include <atomic>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "base/shared_buffer.h"
#include "base/text_functions.h"
#include "contracts/install_exchange_info.h"
#include "contracts/installer_ui.h"
#include "description/colour_theme.h"
#include "description/dialog_model.h"
#include "description/wizard_words.h"

// The session as a front end sees it: plain tables that a test fills. Conditions are looked up by their text
// and are true where a test doesn't say otherwise.
class FakeEngine : public InstallExchangeInfo {
public:
    std::vector<DialogDesc> dialogs;
    std::map<std::string, std::string> variables;
    std::map<std::string, std::string> defaults;
    std::map<std::string, int> conditions;
    std::map<std::string, std::string> shownTexts;  // of elements that expand variables, by their own text
    std::map<std::string, std::string> resources;
    std::vector<std::string> calls;  // goToDialog, shift, cancel and the like

    std::string banner;
    WizardWords words;
    int currentDialog = 0;
    int currentSubDialog = -1;
    std::int32_t uiState = kUiReady;
    std::atomic<bool> cancelled{false};
    bool finished = false;
    bool errors = false;
    std::function<int()> onShift;           // null: finishes the session
    std::function<int()> onCheckCondition;  // null: the page has none
    std::function<int(int dialog)> onGoToDialog;

    DialogDesc& addDialog(const char* name) {
        dialogs.emplace_back();
        dialogs.back().name.assign(name);
        return dialogs.back();
    }

    int getFullName(char* buffer, int size) override { return give("Full name", buffer, size); }
    int getTitle(char* buffer, int size) override { return give("Title", buffer, size); }
    int getMajorVersion(char* buffer, int size) override { return give("1", buffer, size); }
    int getVersion(char* buffer, int size) override { return give("1.0", buffer, size); }
    int getWebsite(char* buffer, int size) override { return give("", buffer, size); }
    int getSupportEmail(char* buffer, int size) override { return give("", buffer, size); }
    int getBanner(char* buffer, int size) override {
        give(banner.c_str(), buffer, size);
        return banner.empty() ? -1 : 0;
    }
    const WizardWords& getWords() override { return words; }
    int getInstallLogFile(char* buffer, int size) override { return give("", buffer, size); }
    int getInstallBackupFile(char* buffer, int size) override { return give("", buffer, size); }
    int getUninstallCmd(char* buffer, int size) override { return give("", buffer, size); }
    int getUninstallXmlFile(char* buffer, int size) override { return give("", buffer, size); }
    int getTemporaryFileName(char* buffer, int size) override { return give("", buffer, size); }
    int getInstallHelpUrl(char* buffer, int size) override { return give("", buffer, size); }
    int getPreviousInstallationKind() override { return 0; }
    bool isUninstalling() override { return false; }

    int readAlias(SharedBuffer& outBuffer, const char* alias, std::array<std::uint8_t, 16>*) override {
        const auto found = resources.find(alias);
        if (found == resources.end()) {
            return -1;
        }
        outBuffer = SharedBuffer(static_cast<std::int32_t>(found->second.size()));
        std::memcpy(outBuffer.data(), found->second.data(), found->second.size());
        return 0;
    }
    int getFilePathByAlias(const char*, char*, int) override { return -1; }

    DialogDesc* getDialog(int dialog, int sub) override {
        if (dialog < 0 || static_cast<std::size_t>(dialog) >= dialogs.size()) {
            return nullptr;
        }
        DialogDesc& frame = dialogs[static_cast<std::size_t>(dialog)];
        return sub == -1 ? &frame : at(frame.subDialogs, sub);
    }
    int getDialogCount() override { return static_cast<int>(dialogs.size()); }
    int getDialogWidth(int) override { return 0; }
    int getDialogHeight(int) override { return 0; }
    int getSubDialogCount(int dialog) override {
        return countOf(getDialog(dialog, -1), &DialogDesc::subDialogs);
    }
    int getCurrentDialog() override { return currentDialog; }
    int getCurrentSubDialog() override { return currentSubDialog; }
    std::uint32_t getRefreshFlags(const char*, int, int) override { return 0; }
    DialogElementDesc* getElement(int dialog, int index, int sub) override {
        return entryOf(getDialog(dialog, sub), &DialogDesc::elements, index);
    }
    int getElementCount(int dialog, int sub) override {
        return countOf(getDialog(dialog, sub), &DialogDesc::elements);
    }
    DialogButtonDesc* getDialogItem(int dialog, int index, int sub) override {
        return entryOf(getDialog(dialog, sub), &DialogDesc::buttons, index);
    }
    int getDialogItemCount(int dialog, int sub) override {
        return countOf(getDialog(dialog, sub), &DialogDesc::buttons);
    }
    DialogFieldDesc* getField(int dialog, int index, int sub) override {
        return entryOf(getDialog(dialog, sub), &DialogDesc::fields, index);
    }
    int getTaskCount(int dialog) override { return countOf(getDialog(dialog, -1), &DialogDesc::tasks); }
    TaskDesc* getTask(int dialog, int index) override {
        return entryOf(getDialog(dialog, -1), &DialogDesc::tasks, index);
    }
    const ColourTheme& getColourTheme() override { return theme_; }
    void setColourTheme(const ColourTheme& theme) override { theme_ = theme; }
    int getFieldCount(int dialog, int sub) override {
        return countOf(getDialog(dialog, sub), &DialogDesc::fields);
    }

    bool isCancelled() override { return cancelled; }
    bool isFinished() override { return finished; }
    bool hasErrors() override { return errors; }
    void setApplicationPath(const char*) override {}
    int getApplicationPath(char* buffer, int size) override { return give("", buffer, size); }
    int checkDialogCondition(InstallerUI*) override {
        calls.emplace_back("checkDialogCondition");
        return onCheckCondition ? onCheckCondition() : 2;
    }
    void setUiState(std::int32_t state) override { uiState = state; }
    std::int32_t getUiState() override { return uiState; }

    std::string getShownText(const DialogElementDesc& element) override {
        return element.expandsVariables ? shownTexts[element.text] : element.text;
    }
    int expandVariables(const char* source, char* destination, int size, bool) override {
        OUtils::copyText(destination, source, size);
        return static_cast<int>(std::strlen(source)) + 1;
    }
    int getDefaultValue(const char* name, char* buffer, int size) override {
        return read(defaults, name, buffer, size);
    }
    int getVariable(const char* name, char* buffer, int size) override {
        return read(variables, name, buffer, size);
    }
    int setVariable(const char* name, const char* value) override {
        variables[name] = value;
        return 0;
    }
    int evaluateCondition(const char* text) override {
        const auto found = conditions.find(text == nullptr ? "" : text);
        return found == conditions.end() ? 1 : found->second;
    }

    void performAction(InstallerUI*, const char*) override {}
    int shift(InstallerUI*, int count) override {
        calls.push_back("shift(" + std::to_string(count) + ")");
        if (onShift) {
            return onShift();
        }
        finished = true;
        return 0;
    }
    bool openInDefaultBrowser(const char*) override { return false; }
    int dialogBack(InstallerUI*, int) override { return 0; }
    int dialogNext(InstallerUI*, int) override { return 0; }
    int cancel(InstallerUI* ui) override {
        if (ui == nullptr) {
            return -1;
        }
        if (ui->confirmCancel() != 0) {
            cancelled = true;
        }
        return 0;
    }
    int goToDialog(int dialog, InstallerUI* ui) override {
        calls.push_back("goToDialog(" + std::to_string(dialog) + ")");
        if (onGoToDialog) {
            return onGoToDialog(dialog);
        }
        return ui->showDialog(dialog);
    }
    int goToSubdialog(int, int, InstallerUI*) override { return 0; }
    void runTriggers(InstallerUI*, std::uint32_t, int, int) override {}
    void refreshTaskStates(InstallerUI*) override {}
    void updateTaskState(InstallerUI*, int, int, std::int32_t) override {}
    void showHelp(InstallerUI*) override {}
    bool isThemed() override { return false; }
    std::int32_t getThemeColour(int) override { return -1; }
    void getDialogColours(int, int, std::int32_t& outBackground, std::int32_t& outForeground) override {
        outBackground = -1;
        outForeground = -1;
    }

private:
    static int give(const char* text, char* buffer, int size) {
        OUtils::copyText(buffer, text, size);
        return 0;
    }
    static int read(const std::map<std::string, std::string>& table, const char* name, char* buffer,
                    int size) {
        const auto found = table.find(name);
        if (found == table.end()) {
            return -1;
        }
        return give(found->second.c_str(), buffer, size);
    }
    template <typename Entry>
    static Entry* at(std::vector<Entry>& list, int index) {
        return index < 0 || static_cast<std::size_t>(index) >= list.size()
                   ? nullptr
                   : &list[static_cast<std::size_t>(index)];
    }
    template <typename Entry>
    static Entry* entryOf(DialogDesc* page, std::vector<Entry> DialogDesc::*list, int index) {
        return page == nullptr ? nullptr : at(page->*list, index);
    }
    template <typename Entry>
    static int countOf(const DialogDesc* page, std::vector<Entry> DialogDesc::*list) {
        return page == nullptr ? 0 : static_cast<int>((page->*list).size());
    }

    ColourTheme theme_;
};
