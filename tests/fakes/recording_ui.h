#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "contracts/installer_ui.h"

// A front end that records each call as text, such as "showSubDialog(0, 2)"; texts are in double quotes, null
// is "null".
class RecordingUI : public InstallerUI {
public:
    std::vector<std::string> calls;

    // What the operations of these names answer.
    int confirmCancelResult = 1;
    int messageBoxResult = 1;
    int graphical = 0;
    int ignoreErrors = 0;
    bool quiet = false;
    int runResult = 0;

    // Called after the recording of each call, with its text.
    std::function<void(const std::string& call)> onCall;

    // The calls that begin with `prefix`.
    std::vector<std::string> callsOf(const std::string& prefix) const;
    int countOf(const std::string& prefix) const { return static_cast<int>(callsOf(prefix).size()); }
    // Gives the calls so far and forgets them.
    std::vector<std::string> take();

    int run() override;
    int finish() override;
    int showDialog(int dialog) override;
    int showSubDialog(int dialog, int sub) override;
    int updateNavigationState() override;
    int refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) override;
    int refreshFields(int dialog, int sub) override;
    int refreshElements() override;
    void showPage(int dialog, int sub, bool show) override;
    int prepareDialog(int dialog) override;
    void prepareSubDialog(int dialog, int sub) override;
    int leaveDialog(int dialog) override;
    void leaveSubDialog(int dialog, int sub) override;
    void clearTaskList() override;
    void destroySubPage() override;
    void keepElement(const char* name) override;
    int confirmCancel() override;
    void enableDisableable(bool enable) override;
    void pumpEvents() override;
    void setCurrentProgress(int percent) override;
    void setOverallProgress(int percent) override;
    void setStatusText(const char* text) override;
    int pumpEventsWhileCopying() override;
    void addFileLine(const char* text, bool flushNow) override;
    void clearFileLines() override;
    void addMessage(std::string_view text) override;
    int messageBox(const char* text, MessageKind kind) override;
    int beginProgress() override;
    int endProgress() override;
    int isGraphical() override;
    int getIgnoreErrors() override;
    bool isQuiet() override { return quiet; }  // a question that isn't recorded
    void setTaskState(const char* name, const char* text, std::int32_t state) override;
    void showHelp() override;
    int createInputProvider(const char* mode, bool& outAutomated) override;
    void setFatalMessage(const char* text, const char* caption) override;
    void showFatalMessage() override;

private:
    void record(const std::string& call);
};
