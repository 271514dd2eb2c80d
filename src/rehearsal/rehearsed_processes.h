#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_processes.h"
#include "platform/memory/memory_registry.h"
#include "rehearsal/machine_description.h"

// Programs that are never run. What starting one gives is what the machine file says; otherwise a program
// that is named with its path must be on the machine, and ends with 0. An uninstaller of the list of
// applications that ends with 0 takes its entry off that list; nothing else happens.
class RehearsedProcesses : public MemoryProcesses {
public:
    // All is borrowed. `actions` gets a line for each program that is started or ended.
    RehearsedProcesses(const MachineDescription& machine, MemoryFileSystem& files, MemoryRegistry& registry,
                       std::vector<std::string>& actions);

    bool terminate(std::uint32_t id, std::uint32_t politeMilliseconds) override;
    std::unique_ptr<platform::ChildProcess> start(std::string_view commandLine,
                                                  std::string_view workDirectory, int& outError) override;

private:
    std::optional<int> resultOf(const std::string& program);
    void takeOffList(std::string_view commandLine);
    void takeOffList(std::string_view commandLine, platform::RegistryRoot root, platform::RegistryView view);

    const MachineDescription& machine_;
    MemoryFileSystem& files_;
    MemoryRegistry& registry_;
    std::vector<std::string>& actions_;
    std::mutex mutex_;  // some programs are started on a thread of the pool
};
