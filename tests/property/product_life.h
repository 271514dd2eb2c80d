#pragma once

#include <map>
#include <string>

#include "machine_state.h"
#include "product_case.h"

// One product on one machine in memory, and what happens to it.
class ProductLife {
public:
    struct Outcome {
        bool finished = false;  // the session came to its end
        int result = 0;

        bool isSuccess() const { return finished && result == 0; }
    };

    static constexpr const char* kLog = "/product/install.log";
    static constexpr const char* kArchive = "/product/backup.bin";
    static constexpr const char* kUninstaller = "/product/installer";

    // Prepares the machine and packs the product. `product` outlives this object.
    explicit ProductLife(const ProductCase& product);

    Outcome install();
    // As the second stage does it, from a copy of the log.
    Outcome uninstall();
    // What the user and others do in between.
    void use();

    // The call that the course names fails, one time.
    void setFault();
    // Only so much can be written as the course says.
    void fillDisk();
    void clearFaults();
    // What the course does to log and archive.
    void spoilRecords();

    MemoryPlatform& machine() { return machine_; }
    const MachineState& start() const { return start_; }
    MachineState state() { return takeState(machine_); }
    bool isListed();  // among the installed applications
    // The files that the traps lead to and that aren't what they were any more.
    std::vector<std::string> changedVictims() const;

private:
    void noteVictims();
    std::string victim(const std::string& path) const;

    const ProductCase& product_;
    MemoryPlatform machine_;
    DiskShellObjects shell_{machine_.files};
    platform::Platform platform_;
    MachineState start_;
    std::map<std::string, std::string> victims_;
};
