#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "description/answers_file.h"
#include "installer/run_options.h"
#include "installer/start_messages.h"
#include "session/command_line_parameters.h"
#include "support/byte_progress.h"
#include "support/debug_log.h"
#include "support/p_file_console.h"
#include "support/run_outcome.h"
#include "wini/nested_sessions.h"
#include "wini/system_services.h"

class GenericUI;
class GraphicalFrontEnds;
class ProgressLine;
class RemovalReceipt;
class Wini;

namespace platform {
class ChildProcess;
struct Platform;
}  // namespace platform

// One run of the program: the command line decides the run mode, which runs one session with one front end.
class InstallerProgram {
public:
    // `platform` and `windows` are borrowed and outlive the object. `box` shows what a graphical run says
    // while it has no window.
    InstallerProgram(platform::Platform& platform, GraphicalFrontEnds& windows,
                     StartMessages::Box box = platform::showMessage);
    ~InstallerProgram();

    // `arguments` start with the program's name. Returns the exit code: 0 for every installation whatever
    // its outcome, for a relaunch that started, and when only the version or help was asked for; -1 for a
    // command line that can't be parsed, missing rights, a run that has neither a window nor a console, a
    // failed relaunch, and an uninstallation that failed or has no receipt though one was asked for. With the
    // option `exitCodes` the number of a RunEnd, which a relaunch takes over from the second stage. Of a
    // verification always that of verifyInstallation.
    int run(const std::vector<std::string>& arguments);

private:
    int runAsAsked(const std::vector<std::string>& arguments);
    void waitForSecondStage(platform::ChildProcess& stage);
    void record(int result);
    void keepMessages();
    void logStart();
    bool chooseFrontEnd();
    bool chooseFrontEndDuringPackageTest();
    void refuseWithoutFrontEnd(const std::string& reason);
    void noteUnusedOptions();
    void makeSession();
    bool testRights();
    int relaunch();
    int install();
    int loadOwnPackage();
    ByteProgress progressOn(ProgressLine& line) const;
    int loadBinFile();
    int runInstallation();
    bool openConsoleDialogue();
    bool acceptsReceipt(const std::string& log);
    int uninstall();
    int uninstallWithReceipt(bool isTurn);
    int uninstallFromLog();
    int uninstallRecovered(const std::string& log);
    int runUninstallation();
    int runUninstallationUI();
    void removeRelaunchCopies();
    bool makeWindow(bool uninstall);
    void makeConsole(bool uninstall);
    int runSession();
    void endSession();
    void showError(std::string_view text);
    // Says and logs why the run can't go on.
    void note(std::string_view text);

    platform::Platform& platform_;
    GraphicalFrontEnds& windows_;
    StartMessages messages_;
    CommandLineParameters parameters_;
    RunOptions options_;
    PFileConsole log_;
    DebugLog debugLog_;
    SystemServices services_;
    AnswersFile answers_;
    NestedSessions nestedSessions_;
    RunOutcome outcome_;
    std::optional<int> secondStageCode_;
    bool isRun_ = false;                       // no question, and a command line that was understood
    bool isHandedOver_ = false;                // to the second stage, which records the run
    std::optional<bool> isPackageWhole_;       // empty until it has been tested
    std::unique_ptr<RemovalReceipt> receipt_;  // of an uninstallation that is to have one
    std::unique_ptr<Wini> wini_;
    std::unique_ptr<GenericUI> ui_;
};
