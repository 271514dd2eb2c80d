#pragma once

#include <cstdint>
#include <string_view>

// How a front end shows a task in the task list.
enum TaskState : std::int32_t {
    kTaskNotReached = 0,
    kTaskCurrent = 1,
    kTaskFinished = 2,
    kTaskFinishedWithError = 3,
    kTaskDisabled = 4,  // only shown, never stored
};

// What the session is doing, as the front ends see it.
enum UiState : std::int32_t {
    kUiReady = 0,
    kUiInstallationRunning = 1,
    kUiNoChange = 2,
    kUiConditionUnmet = 3,
    kUiFieldInvalid = 4,
    kUiBusy = 5,
};

// The parts of a page that depend on variables, for InstallerUI::refreshDialog.
enum RefreshFlag : std::uint32_t {
    kRefreshElements = 1,
    kRefreshFields = 2,
    kRefreshTasks = 4,
    kRefreshButtons = 8,
};

enum class MessageKind : std::int32_t { kOkCancel = 0, kInformation = 1, kYesNo = 2 };

// A front end, as the engine sees it. Dialogs and sub-dialogs are indices; a sub-dialog of -1 means the
// dialog itself. Results are 0 for success and -1 when no engine is attached, unless stated otherwise. All
// operations run on the thread that called run, except confirmCancel, which may also be called by the
// thread of the console control handler. Texts are UTF-8 and only borrowed.
class InstallerUI {
public:
    virtual ~InstallerUI() = default;

    // Runs the whole dialog walk; 0 or the walk's error value. Called once.
    virtual int run() = 0;
    // Called once after run returned.
    virtual int finish() = 0;

    virtual int showDialog(int dialog) = 0;
    virtual int showSubDialog(int dialog, int sub) = 0;
    // Re-reads the dialog's condition and the UI state.
    virtual int updateNavigationState() = 0;
    // `flags` is a set of RefreshFlag.
    virtual int refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) = 0;
    virtual int refreshFields(int dialog, int sub) = 0;
    virtual int refreshElements() = 0;
    virtual void showPage(int dialog, int sub, bool show) = 0;
    virtual int prepareDialog(int dialog) = 0;
    virtual void prepareSubDialog(int dialog, int sub) = 0;
    virtual int leaveDialog(int dialog) = 0;
    virtual void leaveSubDialog(int dialog, int sub) = 0;
    virtual void clearTaskList() = 0;
    virtual void destroySubPage() = 0;
    // Keeps the element of this name when the page changes.
    virtual void keepElement(const char* name) = 0;
    // Asks the user, or refuses, according to the UI state; 1 means that the session stops.
    virtual int confirmCancel() = 0;
    virtual void enableDisableable(bool enable) = 0;
    // Lets the front end process events during long work.
    virtual void pumpEvents() = 0;
    virtual void setCurrentProgress(int percent) = 0;
    virtual void setOverallProgress(int percent) = 0;
    // So much of the file whose path is the status text has been written.
    virtual void setFileProgress(std::int64_t, std::int64_t) {}
    virtual void setStatusText(const char* text) = 0;
    // Like pumpEvents, for the loop that copies files.
    virtual int pumpEventsWhileCopying() = 0;
    // Adds a line to the list of what was done; a null `text` only flushes.
    virtual void addFileLine(const char* text, bool flushNow) = 0;
    virtual void clearFileLines() = 0;
    // Shows a message that the fixed forms of the output have no place for, whatever else is silent: on the
    // console one line to standard error, in a window a line of its list. A window that isn't there yet keeps
    // it for its first list.
    virtual void addMessage(std::string_view text) = 0;
    // 1 when the user gave the affirmative answer. Also before run, for a question that the session has
    // before its first page.
    virtual int messageBox(const char* text, MessageKind kind) = 0;
    virtual int beginProgress() = 0;
    virtual int endProgress() = 0;
    // 1 for a graphical front end.
    virtual int isGraphical() = 0;
    virtual int getIgnoreErrors() = 0;
    // True when lines and status texts aren't shown; messages are.
    virtual bool isQuiet() = 0;
    virtual void setTaskState(const char* name, const char* text, std::int32_t state) = 0;
    virtual void showHelp() = 0;
    // Creates the input provider. `mode` is "uninstall", "autoUninstall", "autoInstall", the empty text or
    // the path of an answers file; `outAutomated` becomes true when no user will be asked. 0 when ready.
    virtual int createInputProvider(const char* mode, bool& outAutomated) = 0;
    // Keeps a message that stops the start of a window; the first one stays. The console has no use for it.
    virtual void setFatalMessage(const char* text, const char* caption) = 0;
    // Shows the message, if there is one, and waits for the user. Before run or after it.
    virtual void showFatalMessage() = 0;
};
