#pragma once

#include <string>

class CommandLineParameters;
namespace platform {
struct Platform;
}

// The option -version, which is answered before anything is started.

// True if the option was given without a value, and the description of the package doesn't read an option of
// this name: for such a product it means what the product wants. `binFile` is the package to look into; empty
// stands for the program's own, if it has one. A package that can't be read reads nothing.
bool asksForVersion(const CommandLineParameters& parameters, const std::string& binFile,
                    platform::Platform& platform);

// One line with a line feed.
std::string versionLine();
