#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/recording_ui.h"
#include "platform/memory/memory_console_device.h"
#include "ui/generic_ui.h"
#include "ui/graphical_front_ends.h"

// A front end with a window: it passes each call on to a recording, and its run is one that a test writes.
class RecordingWindow : public GenericUI {
public:
    using Script = std::function<int(InstallExchangeInfo& engine, InstallerUI& ui)>;

    // `record` outlives this object.
    RecordingWindow(platform::ConsoleDevice& console, AnswersFile& answers, bool uninstall,
                    RecordingUI& record, Script script)
        : GenericUI(console, answers, uninstall, false), record_(record), script_(std::move(script)) {}

    int run() override {
        const int result = record_.run();
        return script_ ? script_(*engine(), *this) : result;
    }
    int finish() override { return record_.finish(); }
    int showDialog(int dialog) override { return record_.showDialog(dialog); }
    int showSubDialog(int dialog, int sub) override { return record_.showSubDialog(dialog, sub); }
    int updateNavigationState() override { return record_.updateNavigationState(); }
    int refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) override {
        return record_.refreshDialog(dialog, sub, flags, setFocus);
    }
    int refreshFields(int dialog, int sub) override { return record_.refreshFields(dialog, sub); }
    int refreshElements() override { return record_.refreshElements(); }
    void showPage(int dialog, int sub, bool show) override { record_.showPage(dialog, sub, show); }
    int prepareDialog(int dialog) override { return record_.prepareDialog(dialog); }
    void prepareSubDialog(int dialog, int sub) override { record_.prepareSubDialog(dialog, sub); }
    int leaveDialog(int dialog) override { return record_.leaveDialog(dialog); }
    void leaveSubDialog(int dialog, int sub) override { record_.leaveSubDialog(dialog, sub); }
    void clearTaskList() override { record_.clearTaskList(); }
    void destroySubPage() override { record_.destroySubPage(); }
    void keepElement(const char* name) override { record_.keepElement(name); }
    int confirmCancel() override { return record_.confirmCancel(); }
    void enableDisableable(bool enable) override { record_.enableDisableable(enable); }
    void pumpEvents() override { record_.pumpEvents(); }
    void setCurrentProgress(int percent) override { record_.setCurrentProgress(percent); }
    void setOverallProgress(int percent) override { record_.setOverallProgress(percent); }
    void setStatusText(const char* text) override { record_.setStatusText(text); }
    int pumpEventsWhileCopying() override { return record_.pumpEventsWhileCopying(); }
    void addFileLine(const char* text, bool flushNow) override { record_.addFileLine(text, flushNow); }
    void clearFileLines() override { record_.clearFileLines(); }
    void addMessage(std::string_view text) override { record_.addMessage(text); }
    int messageBox(const char* text, MessageKind kind) override { return record_.messageBox(text, kind); }
    int isGraphical() override { return 1; }
    bool isQuiet() override { return record_.isQuiet(); }
    void setTaskState(const char* name, const char* text, std::int32_t state) override {
        record_.setTaskState(name, text, state);
    }
    void showHelp() override { record_.showHelp(); }
    void setFatalMessage(const char* text, const char* caption) override {
        record_.setFatalMessage(text, caption);
    }
    void showFatalMessage() override { record_.showFatalMessage(); }

protected:
    std::unique_ptr<InputProvider> makeUser(bool) override { return nullptr; }

private:
    RecordingUI& record_;
    Script script_;
};

// Makes recording windows, all with one recording.
class FakeWindows : public GraphicalFrontEnds {
public:
    bool available = true;
    bool makes = true;
    int questions = 0;       // how often isAvailable was asked
    std::vector<bool> made;  // the `uninstall` of each
    RecordingUI record;
    RecordingWindow::Script script;

    bool isAvailable(std::string& outReason) override {
        ++questions;
        outReason = available ? "" : "there is no display";
        return available;
    }
    std::unique_ptr<GenericUI> make(bool uninstall, AnswersFile& answers, DebugLog) override {
        made.push_back(uninstall);
        return makes ? std::make_unique<RecordingWindow>(console_, answers, uninstall, record, script)
                     : nullptr;
    }

private:
    MemoryConsoleDevice console_;  // which a window never uses
};
