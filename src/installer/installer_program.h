#pragma once

#include <memory>
#include <string>
#include <vector>

#include "installer/run_options.h"
#include "session/command_line_parameters.h"
#include "support/p_file_console.h"

class ConsoleUI;
class Wini;

namespace platform {
struct Platform;
}

// One run of the program: a command line becomes a run mode, and the mode one session with one front end.
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
    bool testRights();
    int install();
    int loadOwnPackage();
    int loadBinFile();
    int runConsoleInstallation();
    int uninstall();
    int runConsoleUninstallation();
    void removeRelaunchCopies();
    int runSession(ConsoleUI& ui, const char* announcement);
    void endSession();
    // On the screen of the run: a message box for a graphical run, else standard output.
    void showError(const char* text);
    void print(const std::string& text);

    platform::Platform& platform_;
    CommandLineParameters parameters_;
    RunOptions options_;
    PFileConsole log_;
    int debugLevel_ = 0;
    std::unique_ptr<Wini> wini_;
    std::unique_ptr<ConsoleUI> ui_;
};
