#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_firewall.h"
#include "platform/memory/memory_named_events.h"
#include "platform/memory/memory_registry.h"
#include "platform/platform.h"
#include "rehearsal/machine_description.h"
#include "rehearsal/rehearsed_console.h"
#include "rehearsal/rehearsed_desktop.h"
#include "rehearsal/rehearsed_processes.h"

// Files whose temporary names count from 1 on each machine.
class RehearsedFiles : public MemoryFileSystem {
public:
    bool temporaryName(std::string_view prefix, std::uint32_t, std::string& outPath) override {
        return MemoryFileSystem::temporaryName(prefix, ++temporaryNames_, outPath);
    }

private:
    std::uint32_t temporaryNames_ = 0;
};

// The machine that a machine file describes. What it doesn't mention is the same everywhere; nothing comes
// from the machine that this program runs on.
class RehearsedMachine {
public:
    // Gives the content of a file beside the machine file.
    using ReadBeside = std::function<std::string(const MachineDescription::Named& copy)>;

    // `machine` is borrowed. Throws InstallerError when two things would be in one place.
    RehearsedMachine(const MachineDescription& machine, const ReadBeside& readBeside);

    platform::Platform bundle();
    // The program that runs: its path gives two of the variables.
    void setProgram(const std::string& path) { environment.program = path; }

    const MachineDescription& description;
    std::vector<std::string> actions;  // what was started, ended and opened, in order
    RehearsedFiles files;
    MemoryRegistry registry;
    RehearsedProcesses processes;
    MemoryEnvironment environment;
    RehearsedConsole console;
    MemoryNamedEvents events;
    RehearsedDesktop desktop;
    MemoryFirewall firewall;

private:
    void checkPlace(std::string path, platform::PathKind kind);
    void addSystem();
    void addFiles(const ReadBeside& readBeside);
    void addSettings();
    void addEnvironment(const std::string& name, const std::string& value);
    void writeValue(const RegistryEntry& entry);
};
