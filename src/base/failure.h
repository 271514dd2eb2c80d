#pragma once

#include <string>

#include "base/errors.h"

// Ends what a tool is doing: throws InstallerError with one line for the user.
[[noreturn]] inline void fail(const std::string& line) {
    throw InstallerError("%s", line.c_str());
}
