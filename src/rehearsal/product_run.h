#pragma once

#include <cstdint>
#include <string>
#include <vector>

class RehearsedMachine;

// What a setup, or an uninstallation, is started with.
struct RunRequest {
    std::string path;         // on the machine: the package, or the action log
    std::int64_t offset = 0;  // of the package in that file
    bool isUninstallation = false;
    std::string answers;               // path on the machine; empty: every default
    std::vector<std::string> options;  // of the command line
};

struct RunResult {
    bool hasSucceeded = false;
    std::string failure;                 // why not, in one line
    std::vector<std::string> errors;     // as the run collected them
    std::vector<std::string> variables;  // lines of an outcome, ordered by their names
    std::vector<std::string> log;        // the debug log's lines
    std::string productLog;              // where the action log is afterwards; empty: there is none
};

// One session of the real engine, unattended, with the console's front end. Nothing waits: a page that would
// hold it ends it, and other waits take no time. Throws InstallerError when it can't be started at all.
RunResult runProduct(RehearsedMachine& machine, const RunRequest& request);
