#pragma once

#include <string>
#include <vector>

namespace platform {

class Registry;

// The full path of the running executable, UTF-8. False on failure.
bool ownImagePath(std::string& outPath);

// The number of the last failed system call of this thread.
int lastSystemError();

// Whether the file of a running program can't be removed, only moved on its volume: so on Windows.
bool keepsRunningPrograms();

// The directories in which only an administrator may create files, the preferred first: the program
// directory that the registry names on Windows; /opt and /usr/local on Linux. Empty when they can't be
// determined.
std::vector<std::string> administratorDirectories(Registry& registry);

}  // namespace platform

// The system's entry point (main or wmain) is in the platform layer and calls this, which each program's
// main.cpp defines. The arguments are UTF-8, the program's name first. Returns the exit code.
int programMain(const std::vector<std::string>& arguments);
