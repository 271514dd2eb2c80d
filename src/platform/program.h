#pragma once

#include <string>
#include <vector>

namespace platform {

class Registry;

// The full path of the running executable, UTF-8. False on failure.
bool ownImagePath(std::string& outPath);

// The number of the last failed system call of this thread.
int lastSystemError();

// The directories in which only an administrator may create files, the preferred first: the program
// directory that the registry names on Windows; /opt and /usr/local on Linux. Empty when it can't be told.
std::vector<std::string> administratorDirectories(Registry& registry);

}  // namespace platform

// The program behind the system's entry point, given by each program's main.cpp: the arguments, the program's
// name first, as UTF-8. Returns the exit code. The platform layer holds main and wmain.
int programMain(const std::vector<std::string>& arguments);
