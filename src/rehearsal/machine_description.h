#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/memory_manner.h"
#include "rehearsal/registry_text.h"

// What a machine file says (machine_format.md).
struct MachineDescription {
    struct Named {
        std::string name;
        std::string text;
        int line = 0;
    };
    struct Step {
        bool isInstallation = true;
        std::string package;               // beside the machine file; empty: the one that is tried
        std::vector<std::string> options;  // as a setup gets them on its command line
    };
    struct FreeSpace {
        std::string path;
        std::int64_t bytes = 0;
    };
    struct ProgramResult {
        std::string pattern;          // for the file name of a program
        std::optional<int> exitCode;  // nothing: it doesn't start
    };

    MemoryManner::System system = MemoryManner::System::kLinux;
    std::string setup;               // where the setup lies
    std::string temporaryDirectory;  // the system's
    std::vector<Step> steps;         // at least one
    std::vector<std::string> directories;
    std::vector<Named> files;     // path and content
    std::vector<Named> programs;  // files that may be run
    std::vector<Named> copies;    // path, and the file beside the machine file whose content it has
    std::vector<Named> links;     // path and target
    std::vector<std::string> readOnly;
    std::vector<FreeSpace> freeSpace;
    std::vector<RegistryEntry> registry;
    std::vector<Named> environment;         // the machine's
    std::vector<Named> processEnvironment;  // the setup's own
    std::vector<std::string> running;       // paths of programs
    std::vector<ProgramResult> results;     // the first pattern that fits counts

    bool isWindows() const { return system == MemoryManner::System::kWindows; }
    // The path of a file that lies where the setup does.
    std::string besideSetup(std::string_view name) const;
};

// A machine of the system with nothing of its own, and one installation.
MachineDescription plainMachine(MemoryManner::System system);

// Throws InstallerError with the number of the line that is wrong.
MachineDescription readMachine(std::string_view text);
