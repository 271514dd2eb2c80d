#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "description/answers_file.h"
#include "installer/run_options.h"
#include "session/command_line_parameters.h"
#include "support/debug_log.h"
#include "support/p_file_console.h"
#include "wini/nested_sessions.h"
#include "wini/system_services.h"

class ConsoleUI;
class Wini;

namespace platform {
struct Platform;
}

// One run of the program: the command line decides the run mode, which runs one session with one front end.
class InstallerProgram {
public:
    // `platform` is borrowed and outlives the object.
    explicit InstallerProgram(platform::Platform& platform);
    ~InstallerProgram();

    // `arguments` start with the program's name. Returns the exit code: 0 for every installation whatever
    // its outcome and for a relaunch that started; -1 for a command line that can't be parsed, missing
    // rights, a failed relaunch, and an uninstallation that failed.
    int run(const std::vector<std::string>& arguments);

private:
    void logStart();
    void chooseFrontEnd();
    void noteUnusedOptions();
    void makeSession();
    bool testRights();
    int install();
    int loadOwnPackage();
    int loadBinFile();
    int runConsoleInstallation();
    int uninstall();
    int uninstallFromLog();
    int uninstallRecovered(const std::string& log);
    int runUninstallation();
    int runConsoleUninstallation();
    void removeRelaunchCopies();
    int runSession(ConsoleUI& ui);
    void endSession();
    // Shows the user a message box in a graphical run, else a text on standard output.
    void showError(std::string_view text);
    // One line to standard error, in a graphical run a message box.
    void note(std::string_view text);
    void print(std::string_view text);

    platform::Platform& platform_;
    CommandLineParameters parameters_;
    RunOptions options_;
    PFileConsole log_;
    DebugLog debugLog_;
    SystemServices services_;
    AnswersFile answers_;
    NestedSessions nestedSessions_;
    std::unique_ptr<Wini> wini_;
    std::unique_ptr<ConsoleUI> ui_;
};
