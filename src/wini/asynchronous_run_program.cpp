#include "wini/asynchronous_run_program.h"

#include <chrono>

#include "contracts/system_modifications.h"
#include "platform/processes.h"

std::int32_t waitForProgram(platform::ChildProcess& program) {
    constexpr std::uint32_t kOneTurn = 0x7FFFFFFF;
    while (!program.wait(kOneTurn)) {
    }
    return program.exitCode();
}

std::string AsynchronousRunProgram::commandLine() const {
    std::string line = (flags & kRunWholeCommandLine) != 0 ? program : '"' + program + '"';
    if (!arguments.empty()) {
        line += ' ' + arguments;
    }
    return line;
}

void AsynchronousRunProgram::RunProgramThread::run(void* request) {
    std::int32_t exitCode = -1;
    try {
        if (request != nullptr) {
            exitCode = runToEnd(*static_cast<const AsynchronousRunProgram*>(request));
        }
    } catch (...) {
        finish(-1);  // whoever waits must not wait for ever
        throw;
    }
    finish(exitCode);
}

std::int32_t AsynchronousRunProgram::RunProgramThread::runToEnd(const AsynchronousRunProgram& request) {
    int error = 0;
    const auto child = processes_.start(request.commandLine().c_str(), request.workDir.c_str(), error);
    return child == nullptr ? -1 : waitForProgram(*child);
}

void AsynchronousRunProgram::RunProgramThread::finish(std::int32_t exitCode) {
    const std::lock_guard lock(mutex_);
    exitCode_ = exitCode;
    finished_ = 1;
    // Under the lock: whoever sees the end may destroy this object at once.
    changed_.notify_all();
}

bool AsynchronousRunProgram::RunProgramThread::isFinished() {
    const std::lock_guard lock(mutex_);
    return finished_ != 0;
}

std::int32_t AsynchronousRunProgram::RunProgramThread::waitFor(std::uint32_t milliseconds) {
    while (!waitAtMost(milliseconds)) {
    }
    const std::lock_guard lock(mutex_);
    return exitCode_;
}

bool AsynchronousRunProgram::RunProgramThread::waitAtMost(std::uint32_t milliseconds) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                             [this] { return finished_ != 0; });
}
