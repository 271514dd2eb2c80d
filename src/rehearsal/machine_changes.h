#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

class RehearsedMachine;

// All that is on a machine, for comparing. Keys are the left sides of the lines of an outcome, values the
// right ones; files and their rights are as MemoryFileSystem::everything has them.
struct MachineSnapshot {
    std::map<std::string, std::string> files;
    std::map<std::string, std::string> registry;
    std::map<std::string, std::string> environment;
    std::map<std::string, std::string> firewall;
};

MachineSnapshot takeSnapshot(RehearsedMachine& machine);

// The difference between two states of a machine as lines, ordered by what they name without regard to case.
// What is gone is "removed".
struct MachineChanges {
    std::vector<std::string> files;
    std::vector<std::string> registry;
    std::vector<std::string> environment;
    std::vector<std::string> shortcuts;
    std::vector<std::string> firewall;
};

MachineChanges changesBetween(const MachineSnapshot& before, const MachineSnapshot& after,
                              const RehearsedMachine& machine);
