#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "rehearsal/machine_description.h"
#include "rehearsal/outcome.h"
#include "rehearsal/rehearsed_machine.h"

// A product that is tried.
struct RehearsedProduct {
    std::string package;                 // the whole file, with or without an image
    std::int64_t offset = 0;             // of the payload in it
    std::optional<std::string> answers;  // the content of an answers file
};

// Gives what lies beside the machine file. Both may throw InstallerError.
struct Surroundings {
    RehearsedMachine::ReadBeside readFile;
    std::function<RehearsedProduct(const std::string& name)> readPackage;  // its answers don't count
};

// Takes the steps of the machine file with the real engine on the machine that it describes, and says what
// became of it. The same input gives the same outcome on every system. Throws InstallerError when a step
// can't be started; one that fails is an outcome. One at a time.
Outcome rehearse(const MachineDescription& description, const RehearsedProduct& product,
                 const Surroundings& surroundings);
