#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contracts/install_exchange_info.h"
#include "engine/run_locks.h"
#include "platform/platform.h"
#include "session/page_work.h"
#include "session/session_model.h"
#include "session/session_state.h"
#include "session/windowless_notice.h"
#include "ui/dialog_walk.h"

// One session: reads the description from the cabinet or, when it uninstalls, from the file that the action
// log names, builds the models, fills the variables, and hands control to the front end, which drives the
// rest. It is constructed, loads its cabinet, runs and is released, each once. One thread, except for
// `cancel`.
class Installer : public InstallExchangeInfo, protected SessionState {
public:
    // All of it is borrowed and outlives the session, except the log, which is shared.
    Installer(const platform::Platform& machine, SystemOperations& system, AnswersFile& answers,
              NestedSessionFactory& nestedSessions, DebugLog log);

    // Called before everything else. The console is borrowed and may be null: then nothing is logged.
    void setConsole(PConsole* console, std::int32_t level);
    // Borrowed; null without a command line. `programOptions` are the names of those options that the program
    // reads itself; they outlive the session.
    void setParameters(const CommandLineArguments* arguments,
                       std::vector<std::string_view> programOptions = {}) {
        parameters = arguments;
        programOptions_ = std::move(programOptions);
    }
    // Called before `run`: the user won't be asked anything.
    void setUnattended(bool unattended) { isUnattended = unattended; }

    // `flags` is a set of SessionFlag. With kSessionActionLog `path` is an action log, which is only opened:
    // 0 or -1. Otherwise it is a package, whose cabinet begins at `offset`: a Cabinet::LoadResult or a code
    // of the decompressor. Failures are logged.
    int loadCabinet(const char* path, std::int64_t offset, std::uint32_t flags);
    // Gets the bytes of the package that loadCabinet has expanded.
    void showLoadingOn(ByteProgress progress) { cabinet.showLoadingOn(std::move(progress)); }
    // Why the last loadCabinet failed, for the user.
    const std::string& loadError() const { return loadError_; }
    // Results of `run` besides those of the front end. They are exit codes of the program, too.
    enum : int {
        kAnotherRunIsAtWork = 2,  // for the same product: nothing was changed
        // An interrupted run wasn't taken back, because the user doesn't want that or not everything came
        // back; nothing else was done.
        kNotRecovered = 3,
        // An interrupted run was taken back, so the product isn't the one that this action log knows. What is
        // to be uninstalled now has the log at productLog().
        kStartAgain = 4,
    };
    // Everything from the description to the end of the walk. 0 or the front end's result; -1 when the
    // session couldn't start or an exception left a step, which is logged and shown; or one of those above.
    // A graphical run shows what it has to say before or after its window with showFatalMessage. Throws
    // nothing.
    int run(InstallerUI* ui, PConsole* console);
    // Where the action log of the product is now; empty when it isn't installed.
    std::string productLog();
    // How the run ended, once `run` is over.
    const RunOutcome& endOfRun() const { return runOutcome; }
    // Frees the cabinet, closes the action log and deletes what the session kept for a revert, unless that is
    // all that is left of an earlier installation: `run` has said then where it is. 0.
    int releaseSession();

    // Product texts.
    int getFullName(char* buffer, int size) override;
    int getTitle(char* buffer, int size) override;
    int getMajorVersion(char* buffer, int size) override;
    int getVersion(char* buffer, int size) override;
    int getWebsite(char* buffer, int size) override;
    int getSupportEmail(char* buffer, int size) override;
    int getBanner(char* buffer, int size) override;
    const WizardWords& getWords() override;
    int getInstallLogFile(char* buffer, int size) override;
    int getInstallBackupFile(char* buffer, int size) override;
    int getUninstallCmd(char* buffer, int size) override;
    int getUninstallXmlFile(char* buffer, int size) override;
    int getTemporaryFileName(char* buffer, int size) override;
    int getInstallHelpUrl(char* buffer, int size) override;

    int getPreviousInstallationKind() override;
    bool isUninstalling() override;
    int readAlias(SharedBuffer& outBuffer, const char* alias,
                  std::array<std::uint8_t, 16>* outDigest) override;
    int getFilePathByAlias(const char* alias, char* buffer, int size) override;

    // Dialogs.
    DialogDesc* getDialog(int dialog, int sub) override;
    int getDialogCount() override;
    int getDialogWidth(int dialog) override;
    int getDialogHeight(int dialog) override;
    int getSubDialogCount(int dialog) override;
    int getCurrentDialog() override;
    int getCurrentSubDialog() override;
    std::string getShownText(const DialogElementDesc& element) override;
    std::uint32_t getRefreshFlags(const char* variable, int dialog, int sub) override;
    DialogElementDesc* getElement(int dialog, int index, int sub) override;
    int getElementCount(int dialog, int sub) override;
    DialogButtonDesc* getDialogItem(int dialog, int index, int sub) override;
    int getDialogItemCount(int dialog, int sub) override;
    DialogFieldDesc* getField(int dialog, int index, int sub) override;
    int getTaskCount(int dialog) override;
    TaskDesc* getTask(int dialog, int index) override;
    const ColourTheme& getColourTheme() override;
    void setColourTheme(const ColourTheme& theme) override;
    int getFieldCount(int dialog, int sub) override;

    bool isCancelled() override;
    bool isFinished() override;
    bool hasErrors() override;
    void setApplicationPath(const char* path) override;
    int getApplicationPath(char* buffer, int size) override;
    int checkDialogCondition(InstallerUI* ui) override;
    void setUiState(std::int32_t state) override;
    std::int32_t getUiState() override;

    // Variables.
    int expandVariables(const char* source, char* destination, int size, bool stopOnMissing) override;
    int getDefaultValue(const char* name, char* buffer, int size) override;
    int getVariable(const char* name, char* buffer, int size) override;
    int setVariable(const char* name, const char* value) override;
    int evaluateCondition(const char* text) override;

    // The walk.
    void performAction(InstallerUI* ui, const char* text) override;
    int shift(InstallerUI* ui, int count) override;
    // A failure is logged.
    bool openInDefaultBrowser(const char* url) override;
    int dialogBack(InstallerUI* ui, int count) override;
    int dialogNext(InstallerUI* ui, int count) override;
    int cancel(InstallerUI* ui) override;
    int goToDialog(int dialog, InstallerUI* ui) override;
    int goToSubdialog(int dialog, int sub, InstallerUI* ui) override;
    void runTriggers(InstallerUI* ui, std::uint32_t when, int dialog, int sub) override;
    void refreshTaskStates(InstallerUI* ui) override;
    void updateTaskState(InstallerUI* ui, int dialog, int task, std::int32_t state) override;
    void showHelp(InstallerUI* ui) override;

    bool isThemed() override;
    std::int32_t getThemeColour(int index) override;
    void getDialogColours(int dialog, int sub, std::int32_t& outBackground,
                          std::int32_t& outForeground) override;

    // Like those of VariableStore.
    int applyAssignment(const char* text);
    int resetVariable(const char* name, int mode);
    // Writes one entry of the cabinet to a file and returns its path; see AliasExtractor. `fileMode` is
    // accepted but not used: files get the usual mode of new ones.
    std::string extractAlias(const char* alias, const char* destinationDirectory, bool expandVariablesInFile,
                             bool stripExeExtension, int fileMode);

protected:
    // A hook, called for every file that is correctly in place after the installation's file loop.
    virtual void afterFileInstalled(const std::string&) {}

    PageWork& pages() { return work_; }
    SessionModel& model() { return model_; }
    NavigationState& navigation() { return walk_.state(); }

private:
    // The steps of run before the front end; false ends the session.
    bool prepare(InstallerUI& ui);
    // Says in one line why the session can't start. False.
    bool refuseStart(InstallerUI& ui, std::string_view why);
    // Keeps other runs for this product away, and takes back what an interrupted one has left. False ends the
    // session.
    bool takeTurn(InstallerUI& ui);
    bool recover(InstallerUI& ui);
    Recovery::Concern concern();
    bool readDescription(InstallerUI& ui);
    bool readDescriptionFromLog(InstallerUI& ui, std::string& outText);
    bool readDescriptionFromCabinet(InstallerUI& ui, std::string& outText);
    bool loadDefaultValues(InstallerUI& ui);
    void remarkOnGivenNames(InstallerUI& ui, std::string_view answersPath);

    int runUI(InstallerUI& ui);
    // For what is said while a graphical run has no window. Everywhere else it is a message.
    void say(InstallerUI& ui, std::string_view line);
    void sayWhyNothingWasDone(InstallerUI& ui, int result);
    void noteEnd();
    void sayWhatStays(InstallerUI& ui);
    void reportError(InstallerUI& ui, std::string_view text, std::string_view reason);

    platform::Platform machine_;
    SystemOperations& system_;
    AnswersFile& answers_;
    SessionModel model_;
    PageWork work_;
    DialogWalk walk_;
    ProductLock lock_;
    WindowlessNotice notice_;
    std::string loadError_;
    int startResult_ = -1;
    std::vector<std::string_view> programOptions_;
};
