#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

// What /proc says about processes. What can't be read counts as missing: a process may end at any time.
namespace platform::proc_files {

// The numbers of all processes. False when /proc can't be read.
bool processIds(std::vector<pid_t>& outIds);

// False for a process that doesn't exist or has ended and waits for its parent.
bool isAlive(pid_t id);

// 0 when it is unknown.
pid_t parentOf(pid_t id);

// The path of the executable, also of one that was replaced or deleted since; empty when it can't be read.
std::string executableOf(pid_t id);

// The base name of the executable as the kernel and the process's arguments give it; empty for kernel
// threads.
std::string nameOf(pid_t id);

// Whether all user numbers of the process (real, effective, saved, for files) are root's. The owner of the
// process's files says less: those of a process that hides its memory belong to root as well.
bool isRoots(pid_t id);

}  // namespace platform::proc_files
