#pragma once

#include <array>
#include <cstdint>
#include <string>

class InstallerUI;
class SharedBuffer;
class ColourTheme;
class WizardWords;
struct DialogDesc;
struct DialogElementDesc;
struct DialogFieldDesc;
struct DialogButtonDesc;
struct TaskDesc;

// The session, as the front ends see it. Text getters fill `buffer` of `size` bytes, terminator included, and
// return 0 for success or a negative number unless stated otherwise. Records belong to the session and stay
// valid until it is released. A `sub` of -1 means the dialog itself; a bad index gives null, 0 or -1. Only
// the thread that called run may use it, except for `cancel`.
//
// A front end that handles its events while the engine works may call everything then: the engine refuses
// what can't be done just now. Steps, triggers and assignments don't start inside one another or while a page
// works; such a call does nothing and gives -1.
//
// Steps, triggers and actions may throw what the work throws. The UI state is neither kUiInstallationRunning
// nor kUiBusy then, and the session goes no further: a front end that is called by a toolkit keeps the
// exception, ends its loop, and throws it again out of InstallerUI::run.
class InstallExchangeInfo {
public:
    virtual ~InstallExchangeInfo() = default;

    virtual int getFullName(char* buffer, int size) = 0;
    virtual int getTitle(char* buffer, int size) = 0;
    virtual int getMajorVersion(char* buffer, int size) = 0;
    virtual int getVersion(char* buffer, int size) = 0;
    virtual int getWebsite(char* buffer, int size) = 0;
    virtual int getSupportEmail(char* buffer, int size) = 0;
    // These four expand variables: 1 when the expansion gave nothing.
    virtual int getInstallLogFile(char* buffer, int size) = 0;
    virtual int getInstallBackupFile(char* buffer, int size) = 0;
    virtual int getUninstallCmd(char* buffer, int size) = 0;
    virtual int getUninstallXmlFile(char* buffer, int size) = 0;
    virtual int getTemporaryFileName(char* buffer, int size) = 0;
    virtual int getInstallHelpUrl(char* buffer, int size) = 0;

    // What the console frames at the start; -1 where the description has nothing of its own.
    virtual int getBanner(char* buffer, int size) = 0;
    // Belong to the session.
    virtual const WizardWords& getWords() = 0;

    // 0 none, 1 in the list of installed applications, 2 found by its log file only.
    virtual int getPreviousInstallationKind() = 0;
    virtual bool isUninstalling() = 0;

    // The content of a cabinet entry; `outDigest`, when not null, receives its MD5. 0 or -1.
    virtual int readAlias(SharedBuffer& outBuffer, const char* alias,
                          std::array<std::uint8_t, 16>* outDigest) = 0;
    // The result is always -1; `buffer` shows whether the alias was found.
    virtual int getFilePathByAlias(const char* alias, char* buffer, int size) = 0;

    virtual DialogDesc* getDialog(int dialog, int sub) = 0;
    virtual int getDialogCount() = 0;
    virtual int getDialogWidth(int dialog) = 0;
    virtual int getDialogHeight(int dialog) = 0;
    virtual int getSubDialogCount(int dialog) = 0;
    virtual int getCurrentDialog() = 0;
    virtual int getCurrentSubDialog() = 0;
    // The parts of a page that depend on a variable: a set of RefreshFlag.
    virtual std::uint32_t getRefreshFlags(const char* variable, int dialog, int sub) = 0;
    virtual DialogElementDesc* getElement(int dialog, int index, int sub) = 0;
    virtual int getElementCount(int dialog, int sub) = 0;
    // The text of an element as it is shown now: with the values of variables, in the system's form of paths,
    // where the element asks for that.
    virtual std::string getShownText(const DialogElementDesc& element) = 0;
    virtual DialogButtonDesc* getDialogItem(int dialog, int index, int sub) = 0;
    virtual int getDialogItemCount(int dialog, int sub) = 0;
    virtual DialogFieldDesc* getField(int dialog, int index, int sub) = 0;
    virtual int getTaskCount(int dialog) = 0;
    virtual TaskDesc* getTask(int dialog, int index) = 0;
    virtual const ColourTheme& getColourTheme() = 0;
    virtual void setColourTheme(const ColourTheme& theme) = 0;
    virtual int getFieldCount(int dialog, int sub) = 0;

    virtual bool isCancelled() = 0;
    virtual bool isFinished() = 0;
    // Whether the run, if it ended now, would have failed: also one that was cancelled, or that has not come
    // to its work.
    virtual bool hasErrors() = 0;

    // Overrides the path of the program's image; null or empty removes the override.
    virtual void setApplicationPath(const char* path) = 0;
    // The directory of the program's image, or the override.
    virtual int getApplicationPath(char* buffer, int size) = 0;

    // Evaluates the condition of the current page: 2 when it has none, else 0 or 1.
    virtual int checkDialogCondition(InstallerUI* ui) = 0;
    // Has no effect while a page works or is busy (1 and 5): it leaves these states by itself.
    virtual void setUiState(std::int32_t state) = 0;
    virtual std::int32_t getUiState() = 0;

    // Bracket expansion. The size of the whole text with its terminator, in bytes; 0 when there is nothing to
    // expand or, with `stopOnMissing`, a variable is missing. `destination` may be null to measure.
    virtual int expandVariables(const char* source, char* destination, int size, bool stopOnMissing) = 0;
    virtual int getDefaultValue(const char* name, char* buffer, int size) = 0;
    // The variable's index, -2 for a predefined one or the environment's, -1 when there is none.
    virtual int getVariable(const char* name, char* buffer, int size) = 0;
    // 0; -1 when it can't be stored, and while a page works or is busy.
    virtual int setVariable(const char* name, const char* value) = 0;
    // 1 true, 0 false, -1 broken; every caller only tests for non-zero.
    virtual int evaluateCondition(const char* text) = 0;

    virtual void performAction(InstallerUI* ui, const char* text) = 0;
    virtual int shift(InstallerUI* ui, int count) = 0;
    virtual bool openInDefaultBrowser(const char* url) = 0;
    virtual int dialogBack(InstallerUI* ui, int count) = 0;
    virtual int dialogNext(InstallerUI* ui, int count) = 0;
    // Callable from any thread. -1 without a front end, else 0.
    virtual int cancel(InstallerUI* ui) = 0;
    virtual int goToDialog(int dialog, InstallerUI* ui) = 0;
    virtual int goToSubdialog(int dialog, int sub, InstallerUI* ui) = 0;
    virtual void runTriggers(InstallerUI* ui, std::uint32_t when, int dialog, int sub) = 0;
    virtual void refreshTaskStates(InstallerUI* ui) = 0;
    virtual void updateTaskState(InstallerUI* ui, int dialog, int task, std::int32_t state) = 0;
    virtual void showHelp(InstallerUI* ui) = 0;

    virtual bool isThemed() = 0;
    // 0x00BBGGRR, or -1 when not set.
    virtual std::int32_t getThemeColour(int index) = 0;
    virtual void getDialogColours(int dialog, int sub, std::int32_t& outBackground,
                                  std::int32_t& outForeground) = 0;
};
