#include "rehearsal/rehearsed_processes.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/wildcard.h"

namespace {

constexpr std::uint32_t kFirstId = 100;
constexpr std::string_view kUninstallList = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

// Double quotes keep blanks together.
std::string firstWord(std::string_view commandLine) {
    const bool isQuoted = commandLine.starts_with('"');
    if (isQuoted) {
        commandLine.remove_prefix(1);
    }
    return std::string(commandLine.substr(0, commandLine.find(isQuoted ? '"' : ' ')));
}

bool hasPath(const std::string& program) {
    return program.find_first_of("/\\") != std::string::npos;
}

}  // namespace

RehearsedProcesses::RehearsedProcesses(const MachineDescription& machine, MemoryFileSystem& files,
                                       MemoryRegistry& registry, std::vector<std::string>& actions)
    : machine_(machine), files_(files), registry_(registry), actions_(actions) {
    std::uint32_t id = kFirstId;
    for (const std::string& path : machine.running) {
        running.push_back({id++, std::string(OUtils::lastPathComponent(path)), path});
    }
}

bool RehearsedProcesses::terminate(std::uint32_t id, std::uint32_t politeMilliseconds) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find(running, id, &platform::ProcessInfo::id);
    if (found != running.end()) {
        actions_.push_back("end " + found->path);
    }
    return MemoryProcesses::terminate(id, politeMilliseconds);
}

std::unique_ptr<platform::ChildProcess> RehearsedProcesses::start(std::string_view commandLine,
                                                                  std::string_view workDirectory,
                                                                  int& outError) {
    const std::lock_guard lock(mutex_);
    const std::optional<int> result = resultOf(firstWord(commandLine));
    std::string action = "run " + std::string(commandLine);
    if (!workDirectory.empty()) {
        action.append(" in ").append(workDirectory);
    }
    actions_.push_back(action + (result ? " -> " + std::to_string(*result) : " -> cannot start"));
    if (result == 0) {
        takeOffList(commandLine);
    }
    exitCodes = {result.value_or(0)};
    startErrors = {result ? 0 : static_cast<int>(MemoryFileSystem::kNotFound)};
    return MemoryProcesses::start(commandLine, workDirectory, outError);
}

std::optional<int> RehearsedProcesses::resultOf(const std::string& program) {
    const std::string_view name = OUtils::lastPathComponent(program);
    for (const MachineDescription::ProgramResult& result : machine_.results) {
        if (matchesWildcard(result.pattern, name)) {
            return result.exitCode;
        }
    }
    std::string found;
    const bool canStart = !hasPath(program) || files_.resolveFile(program, found) == 0;
    return canStart ? std::optional(0) : std::nullopt;
}

void RehearsedProcesses::takeOffList(std::string_view commandLine) {
    using platform::RegistryRoot;
    using platform::RegistryView;
    for (const RegistryRoot root : {RegistryRoot::kLocalMachine, RegistryRoot::kCurrentUser}) {
        for (const RegistryView view : {RegistryView::kNative, RegistryView::k32Bit}) {
            takeOffList(commandLine, root, view);
        }
    }
}

// The command may be followed by arguments.
void RehearsedProcesses::takeOffList(std::string_view commandLine, platform::RegistryRoot root,
                                     platform::RegistryView view) {
    std::vector<std::string> names;
    registry_.listKeys(root, kUninstallList, view, names);
    for (const std::string& name : names) {
        const std::string key = std::string(kUninstallList) + "\\" + name;
        platform::RegistryValue command;
        const int status = registry_.readValue(root, key, view, "UninstallString", command);
        if (status == platform::kRegOk && !command.data.empty() && commandLine.starts_with(command.data)) {
            registry_.deleteKey(root, key, view);
        }
    }
}
