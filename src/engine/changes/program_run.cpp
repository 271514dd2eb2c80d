#include "engine/changes/program_run.h"

#include <algorithm>
#include <chrono>

#include "engine/report.h"
#include "platform/processes.h"
#include "platform/shell_objects.h"

namespace {

constexpr std::uint32_t kEndMilliseconds = 100;

using RunProgramThread = AsynchronousRunProgram::RunProgramThread;

// Waits for the end of a program without a limit. Its exit code.
std::int32_t waitForProgram(platform::ChildProcess& program) {
    constexpr std::uint32_t kOneTurn = 0x7FFFFFFF;
    while (!program.wait(kOneTurn)) {
    }
    return program.exitCode();
}

// The same, while the front end handles its events.
std::int32_t waitForProgram(platform::ChildProcess& program, Report& report) {
    constexpr std::uint32_t kOneLook = 50;
    do {
        report.pumpEvents();
    } while (!program.wait(kOneLook));
    return program.exitCode();
}

// However the loop is left, by an exception too, no thread goes on using what is gone by then.
class EndOfRun {
public:
    explicit EndOfRun(RunProgramThread& thread) : thread_(thread) {}
    ~EndOfRun() { thread_.waitFor(kEndMilliseconds); }
    EndOfRun(const EndOfRun&) = delete;
    EndOfRun& operator=(const EndOfRun&) = delete;

private:
    RunProgramThread& thread_;
};

// Serves the front end until the program has ended.
void serve(RunProgramThread& thread, Report& report, bool advanceProgress, std::uint32_t pause) {
    int percent = 0;
    // Without a pause one processor would do nothing but look.
    const std::uint32_t shortestPause = std::max<std::uint32_t>(pause, 1);
    while (!thread.isFinished()) {
        report.pumpEvents();
        if (advanceProgress) {
            report.setProgress(percent);
            percent = std::min(percent + 1, 100);
        }
        thread.waitAtMost(shortestPause);
    }
}

}  // namespace

std::string AsynchronousRunProgram::commandLine() const {
    std::string line = (flags & kRunWholeCommandLine) != 0 ? program : '"' + program + '"';
    if (!arguments.empty()) {
        line += ' ' + arguments;
    }
    return line;
}

void RunProgramThread::run(void* request) {
    std::optional<std::int32_t> exitCode;
    int error = 0;
    try {
        if (request != nullptr) {
            exitCode = runToEnd(*static_cast<const AsynchronousRunProgram*>(request), error);
        }
    } catch (...) {
        finish(std::nullopt, error);  // whoever waits must not wait for ever
        throw;
    }
    finish(exitCode, error);
}

std::optional<std::int32_t> RunProgramThread::runToEnd(const AsynchronousRunProgram& request, int& outError) {
    const auto child = processes_.start(request.commandLine(), request.workDir, outError);
    return child == nullptr ? std::nullopt : std::optional(waitForProgram(*child));
}

void RunProgramThread::finish(std::optional<std::int32_t> exitCode, int startError) {
    const std::lock_guard lock(mutex_);
    exitCode_ = exitCode;
    startError_ = exitCode ? 0 : startError;
    finished_ = true;
    // Under the lock: whoever sees the end may destroy this object at once.
    changed_.notify_all();
}

bool RunProgramThread::isFinished() {
    const std::lock_guard lock(mutex_);
    return finished_;
}

std::int32_t RunProgramThread::waitFor(std::uint32_t milliseconds) {
    while (!waitAtMost(milliseconds)) {
    }
    return exitCode().value_or(-1);
}

std::optional<std::int32_t> RunProgramThread::exitCode() {
    const std::lock_guard lock(mutex_);
    return exitCode_;
}

int RunProgramThread::startError() {
    const std::lock_guard lock(mutex_);
    return startError_;
}

bool RunProgramThread::waitAtMost(std::uint32_t milliseconds) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return finished_; });
}

ProgramOutcome ProgramRun::execute(const AsynchronousRunProgram& program, Report& report,
                                   std::uint32_t pause) {
    if ((program.flags & kRunOpenWithShell) != 0) {
        return {shell_.openDocument(program.program), std::nullopt};
    }
    const ProgramOutcome outcome = (program.flags & kRunAsynchronous) != 0
                                       ? runOnThread(program, report, pause)
                                       : runHere(program, report);
    if (outcome.exitCode.value_or(0) != 0) {
        debugLog_.line("ERROR: " + program.commandLine() + " ended with the code " +
                       std::to_string(*outcome.exitCode));
    }
    if (outcome.startError != 0) {
        debugLog_.line("ERROR: " + program.commandLine() + " does not start (" +
                       std::to_string(outcome.startError) + ")");
        report.addReason(program.program, outcome.startError);
    }
    return outcome;
}

ProgramOutcome ProgramRun::runOnThread(AsynchronousRunProgram program, Report& report, std::uint32_t pause) {
    if (threads_ == nullptr) {
        threads_.reset(OUtils::createThreadManager({}));
    }
    RunProgramThread thread(processes_);
    if (threads_ == nullptr || threads_->startDetached(thread, &program) != 0) {
        debugLog_.line("ERROR: No thread for running " + program.commandLine());
        return {};
    }
    const EndOfRun end(thread);
    serve(thread, report, (program.flags & kRunAdvanceProgress) != 0, pause);
    thread.waitFor(kEndMilliseconds);
    const auto exitCode = thread.exitCode();
    return {exitCode.has_value(), exitCode, thread.startError()};
}

ProgramOutcome ProgramRun::runHere(const AsynchronousRunProgram& program, Report& report) {
    int error = 0;
    const auto child = processes_.start(program.commandLine(), program.workDir, error);
    if (child == nullptr) {
        return {false, std::nullopt, error};
    }
    const bool waits = (program.flags & kRunWait) != 0;
    return {true, waits ? std::optional(waitForProgram(*child, report)) : std::nullopt};
}
