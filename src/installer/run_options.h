#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session_flags.h"

class CommandLineParameters;

// How the program was asked to run. A text is absent where its option wasn't given.
struct RunOptions {
    int debug = 0;
    int gui = 1;  // wanted; what is shown also depends on what this build has
    int ignoreErrors = 0;
    bool autoMode = false;
    int quiet = 0;
    bool exitCodes = false;  // the program's exit code tells how the run ended
    std::uint32_t sessionFlags = 0;
    std::optional<std::string> configFile;
    std::optional<std::string> binFile;
    std::optional<std::string> uninstallLog;   // first stage of uninstalling: the installation's action log
    std::string uninstallApp;                  // the product's name, for the second stage
    std::optional<std::string> uninstallFile;  // second stage: the copied action log
    std::optional<std::string> verifyLog;      // the action log to compare the machine with
    std::optional<std::string> receipt;        // where the list of records goes
    std::string receiptLog;                    // second stage, with a receipt: the installation's action log
};

// Reads the options in the order that decides how they combine: an answers file and `auto` select the
// console, and an explicit `quiet` overrides the silence of an answers file.
RunOptions readRunOptions(const CommandLineParameters& parameters);

// True if help was asked for, by one of its names without a value.
bool asksForHelp(const CommandLineParameters& parameters);

// The names of all options that readRunOptions looks for.
std::vector<std::string_view> runOptionNames();
