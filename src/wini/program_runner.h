#pragma once

#include <cstdint>

#include "support/debug_log.h"
#include "support/thread_manager.h"
#include "wini/asynchronous_run_program.h"

class InstallerUI;

namespace platform {
class Processes;
class ShellObjects;
}  // namespace platform

// Runs programs: hands a document to the desktop, starts a process and perhaps waits for it, or lets a thread
// wait for it while the front end breathes. A program that is waited for and never ends holds up its caller.
class ProgramRunner {
public:
    // All are borrowed and outlive this object.
    ProgramRunner(platform::Processes& processes, platform::ShellObjects& shell, DebugLog debugLog)
        : processes_(processes), shell_(shell), debugLog_(debugLog) {}

    // As SystemModifications::runAssociatedProgram.
    bool runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                              const char* workDir, InstallerUI* ui, std::uint32_t delay);

private:
    bool runOnThread(AsynchronousRunProgram& program, InstallerUI* ui, std::uint32_t delay);
    bool runHere(const AsynchronousRunProgram& program);

    platform::Processes& processes_;
    platform::ShellObjects& shell_;
    DebugLog debugLog_;
    OUtils::ThreadManagerPtr threads_;  // made at the first use
};
