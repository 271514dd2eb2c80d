#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "support/debug_log.h"
#include "support/thread_manager.h"

class Report;

namespace platform {
class ChildProcess;
class Processes;
class ShellObjects;
}  // namespace platform

enum RunProgramFlag : std::uint32_t {
    kRunOpenWithShell = 1,
    kRunWait = 2,
    kRunAsRoot = 4,  // no effect on the present platforms
    kRunAsynchronous = 8,
    kRunAdvanceProgress = 16,
    kRunNoErrorOutput = 32,  // no effect on the present platforms
    kRunWholeCommandLine = 64,
};

// A program to be run, for a thread of its own or for the calling one.
class AsynchronousRunProgram {
public:
    class RunProgramThread;

    std::string program;
    std::string arguments;    // empty: none
    std::string workDir;      // empty: the caller's
    std::uint32_t flags = 0;  // a set of RunProgramFlag

    // The program in double quotes, or as it is when it is a whole command line, and the arguments.
    std::string commandLine() const;
};

// Runs one program and waits for its end, however long that takes. One run for each object; the thread that
// made the object asks for the result.
class AsynchronousRunProgram::RunProgramThread : public OUtils::ThreadProcedure {
public:
    // Borrowed and outlives this object.
    explicit RunProgramThread(platform::Processes& processes) : processes_(processes) {}

    // `request` is an AsynchronousRunProgram that outlives the run; null runs nothing.
    void run(void* request) override;
    virtual const char* getName() const { return "InstallerRunProgramThread"; }
    virtual bool isFinished();
    // Waits for the end of the run, looking each `milliseconds`. The program's exit code; -1 when it could
    // not be started or nothing was run.
    virtual std::int32_t waitFor(std::uint32_t milliseconds);
    // Of an ended run: the program's exit code; none when it could not be started or nothing was run.
    std::optional<std::int32_t> exitCode();
    // Of an ended run: why the program could not be started, as the system's error number; otherwise 0.
    int startError();
    // Waits at most so long. True when the run has ended.
    bool waitAtMost(std::uint32_t milliseconds);

private:
    std::optional<std::int32_t> runToEnd(const AsynchronousRunProgram& request, int& outError);
    void finish(std::optional<std::int32_t> exitCode, int startError);

    platform::Processes& processes_;
    std::mutex mutex_;  // guards the fields below
    std::condition_variable changed_;
    bool finished_ = false;
    std::optional<std::int32_t> exitCode_;
    int startError_ = 0;
};

// What became of a program or a document.
struct ProgramOutcome {
    bool started = false;                  // the document was opened, the program was started
    std::optional<std::int32_t> exitCode;  // of a program whose end was waited for
    int startError = 0;                    // the system's number when a program could not be started

    bool succeeded() const { return started && exitCode.value_or(0) == 0; }
};

// Runs programs: hands a document to the desktop, starts a process and perhaps waits for it, or lets a thread
// wait for it. The front end keeps responding meanwhile. A program that never ends blocks whoever waits for
// it. Not a change that can be taken back: a program that ran leaves no record.
class ProgramRun {
public:
    // Both are borrowed and outlive this object.
    ProgramRun(platform::Processes& processes, platform::ShellObjects& shell, DebugLog debugLog)
        : processes_(processes), shell_(shell), debugLog_(debugLog) {}

    // `pause` is the time between two looks at an asynchronous program, in milliseconds. An asynchronous
    // program is always waited for. A code other than 0 is logged; why a program can't be started is logged
    // and shown.
    ProgramOutcome execute(const AsynchronousRunProgram& program, Report& report, std::uint32_t pause);
    // The same. True when the document was opened, the program was started, or, where its end is waited for,
    // ended with 0.
    bool run(const AsynchronousRunProgram& program, Report& report, std::uint32_t pause) {
        return execute(program, report, pause).succeeded();
    }

private:
    ProgramOutcome runOnThread(AsynchronousRunProgram program, Report& report, std::uint32_t pause);
    ProgramOutcome runHere(const AsynchronousRunProgram& program, Report& report);

    platform::Processes& processes_;
    platform::ShellObjects& shell_;
    DebugLog debugLog_;
    OUtils::ThreadManagerPtr threads_;  // made at the first use
};
