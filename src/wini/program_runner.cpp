#include "wini/program_runner.h"

#include <algorithm>

#include "contracts/installer_ui.h"
#include "contracts/system_modifications.h"
#include "platform/processes.h"
#include "platform/shell_objects.h"

namespace {

constexpr std::uint32_t kEndMilliseconds = 100;

using RunProgramThread = AsynchronousRunProgram::RunProgramThread;

// What leaves the loop, an exception too, leaves no thread behind that uses what is gone then.
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
void serve(RunProgramThread& thread, InstallerUI* ui, bool advanceProgress, std::uint32_t delay) {
    int percent = 0;
    // Without a pause one processor would do nothing but look.
    const std::uint32_t pause = std::max<std::uint32_t>(delay, 1);
    while (!thread.isFinished()) {
        if (ui != nullptr) {
            ui->pumpEvents();
            if (advanceProgress) {
                ui->setCurrentProgress(percent);
                percent = std::min(percent + 1, 100);
            }
        }
        thread.waitAtMost(pause);
    }
}

std::string textOf(const char* text) {
    return text == nullptr ? std::string() : text;
}

}  // namespace

bool ProgramRunner::runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                                         const char* workDir, InstallerUI* ui, std::uint32_t delay) {
    if (path == nullptr) {
        return false;
    }
    if ((flags & kRunOpenWithShell) != 0) {
        return shell_.openDocument(path);
    }
    AsynchronousRunProgram program{path, textOf(arguments), textOf(workDir), flags};
    return (flags & kRunAsynchronous) != 0 ? runOnThread(program, ui, delay) : runHere(program);
}

bool ProgramRunner::runOnThread(AsynchronousRunProgram& program, InstallerUI* ui, std::uint32_t delay) {
    if (threads_ == nullptr) {
        threads_.reset(OUtils::createThreadManager({}));
    }
    RunProgramThread thread(processes_);
    if (threads_ == nullptr || threads_->startDetached(thread, &program) != 0) {
        debugLog_.print("ERROR: No thread for running %s", program.commandLine().c_str());
        return false;
    }
    const EndOfRun end(thread);
    serve(thread, ui, (program.flags & kRunAdvanceProgress) != 0, delay);
    return thread.waitFor(kEndMilliseconds) == 0;
}

bool ProgramRunner::runHere(const AsynchronousRunProgram& program) {
    int error = 0;
    const auto child = processes_.start(program.commandLine().c_str(), program.workDir.c_str(), error);
    if (child == nullptr) {
        debugLog_.print("ERROR: %s does not start (%d)", program.commandLine().c_str(), error);
        return false;
    }
    return (program.flags & kRunWait) == 0 || waitForProgram(*child) == 0;
}
