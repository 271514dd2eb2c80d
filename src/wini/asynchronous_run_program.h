#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>

#include "support/thread_manager.h"

namespace platform {
class ChildProcess;
class Processes;
}  // namespace platform

// Waits for the end of a program without a limit. Its exit code.
std::int32_t waitForProgram(platform::ChildProcess& program);

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
    // Waits at most so long. True when the run has ended.
    bool waitAtMost(std::uint32_t milliseconds);

private:
    std::int32_t runToEnd(const AsynchronousRunProgram& request);
    void finish(std::int32_t exitCode);

    platform::Processes& processes_;
    std::mutex mutex_;  // guards the two fields below
    std::condition_variable changed_;
    std::uint8_t finished_ = 0;
    std::int32_t exitCode_ = -1;
};
