#pragma once

#include <map>
#include <string>
#include <vector>

#include "call_gate.h"
#include "platform/memory/memory_platform.h"

// All that a run may change on a machine, by what it is: "file /a/b", "registry HKLM\a:b", "firewall 80 TCP".
using MachineState = std::map<std::string, std::string>;

// A place in which two states differ.
struct Difference {
    std::string place;  // as MachineState has it
    std::string expected;
    std::string found;  // both empty when there is nothing

    std::string text() const;
};
std::vector<Difference> differencesOf(const MachineState& expected, const MachineState& found);

// A desktop whose links are files with all that a link says.
class DiskShell : public MemoryShellObjects {
public:
    explicit DiskShell(MemoryFileSystem& files) : files_(files) {}
    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;
    int createSymlink(std::string_view linkPath, std::string_view target) override;

private:
    MemoryFileSystem& files_;
};

// A machine in memory that can be copied as it is at some moment: disk, registry and firewall.
class Machine {
public:
    Machine();
    Machine(const Machine& other);
    Machine& operator=(const Machine&) = delete;

    MemoryPlatform fakes;

    // Everything but the kit, from which products are installed.
    MachineState state() const;
    platform::Platform bundle() {
        return {fakes.files,   fakes.registry, fakes.processes, fakes.environment,
                fakes.console, fakes.events,   shell_,          fakes.firewall};
    }

private:
    void letProgramsWork();

    DiskShell shell_{fakes.files};
};
