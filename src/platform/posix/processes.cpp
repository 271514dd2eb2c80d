#include "platform/processes.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>

#include "base/path_functions.h"
#include "platform/linux_path.h"
#include "platform/posix/child_process.h"
#include "platform/posix/command_line.h"
#include "platform/posix/proc_files.h"
#include "platform/posix/process_handle.h"
#include "platform/posix/spawn_settings.h"

namespace platform {

namespace {

// How long a process that can't refuse gets to leave the process table.
constexpr std::uint32_t kHardEndMilliseconds = 1000;

// A relative path means the directory of the caller, while the system would start at the child's.
std::string programPath(const std::string& word) {
    std::string program = linuxPath(word);
    if (program.find('/') == std::string::npos || program[0] == '/') {
        return program;
    }
    char directory[PATH_MAX];
    return getcwd(directory, sizeof directory) != nullptr ? std::string(directory) + "/" + program : program;
}

class PosixProcesses : public Processes {
public:
    bool list(std::vector<ProcessInfo>& outProcesses) override;
    bool terminate(std::uint32_t id, std::uint32_t politeMilliseconds) override;
    std::unique_ptr<ChildProcess> start(std::string_view commandLine, std::string_view workDirectory,
                                        int& outError) override;
    std::uint32_t currentId() override { return static_cast<std::uint32_t>(getpid()); }
    std::vector<std::uint32_t> ownLine() override;
    bool isAdministrators(std::uint32_t id) override {
        return id <= INT_MAX && proc_files::isRoots(static_cast<pid_t>(id));
    }
};

bool PosixProcesses::list(std::vector<ProcessInfo>& outProcesses) {
    outProcesses.clear();
    std::vector<pid_t> ids;
    if (!proc_files::processIds(ids)) {
        return false;
    }
    for (const pid_t id : ids) {
        ProcessInfo info;
        info.id = static_cast<std::uint32_t>(id);
        info.path = proc_files::executableOf(id);
        // An executable that can't be read belongs to another user, whose process still has a name.
        info.name =
            info.path.empty() ? proc_files::nameOf(id) : std::string(OUtils::lastPathComponent(info.path));
        if (!info.name.empty()) {
            outProcesses.push_back(std::move(info));
        }
    }
    return true;
}

bool PosixProcesses::terminate(std::uint32_t id, std::uint32_t politeMilliseconds) {
    // 0, 1 and numbers that are negative as a process id stand for whole groups or for the system itself.
    if (id <= 1 || id > INT_MAX) {
        return false;
    }
    const std::vector<std::uint32_t> line = ownLine();
    if (std::find(line.begin(), line.end(), id) != line.end()) {
        return false;
    }
    ProcessHandle process(static_cast<pid_t>(id));
    if (!process.sendSignal(SIGTERM)) {
        return false;
    }
    if (!process.waitForEnd(politeMilliseconds)) {
        process.sendSignal(SIGKILL);
        process.waitForEnd(kHardEndMilliseconds);
    }
    return true;
}

std::vector<std::uint32_t> PosixProcesses::ownLine() {
    constexpr std::size_t kMaxDepth = 1000;
    std::vector<std::uint32_t> line;
    for (pid_t id = getpid(); id > 0 && line.size() < kMaxDepth; id = proc_files::parentOf(id)) {
        line.push_back(static_cast<std::uint32_t>(id));
    }
    return line;
}

std::unique_ptr<ChildProcess> PosixProcesses::start(std::string_view commandLine,
                                                    std::string_view workDirectory, int& outError) {
    collectDroppedChildren();
    std::vector<std::string> words = splitCommandLine(commandLine);
    if (words.empty() || words[0].empty()) {
        outError = EINVAL;
        return nullptr;
    }
    SpawnSettings settings;
    settings.setWorkDirectory(linuxPath(workDirectory));
    pid_t id = 0;
    const std::string program = programPath(words[0]);
    words[0] = linuxPath(words[0]);
    outError = settings.spawn(program, words, id);
    return outError == 0 ? std::make_unique<PosixChildProcess>(id) : nullptr;
}

}  // namespace

Processes& systemProcesses() {
    static PosixProcesses processes;
    return processes;
}

}  // namespace platform
