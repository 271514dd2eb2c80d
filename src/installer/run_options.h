#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "session/session_flags.h"

class CommandLineParameters;

// How the program was asked to run. Texts are null where the option wasn't given; they belong to the
// parameter list.
struct RunOptions {
    int debug = 0;
    int gui = 1;  // wanted; what is shown also hangs on what this build has
    int ignoreErrors = 0;
    bool autoMode = false;
    int quiet = 0;
    std::uint32_t sessionFlags = 0;
    const char* configFile = nullptr;
    const char* binFile = nullptr;
    const char* uninstallLog = nullptr;  // first stage of uninstalling: the installation's action log
    const char* uninstallApp = nullptr;
    const char* uninstallFile = nullptr;  // second stage: the copied action log
};

// Reads the options in the one order that fixes their interplay: an answers file and `auto` select the
// console, and a `quiet` beside an answers file wins over the silence that this brings.
RunOptions readRunOptions(const CommandLineParameters& parameters);

// The names of all options that readRunOptions looks for.
std::vector<std::string_view> runOptionNames();
