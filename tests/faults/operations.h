#pragma once

#include <array>
#include <string>

#include "machine.h"
#include "runs.h"
#include "sample_product.h"

enum class OperationKind {
    kInstall,    // the first version, on a machine without it
    kUpgrade,    // the second version, on a machine with the first one
    kRevert,     // what a second version does that fails, from the page that takes it back on
    kUninstall,  // the first version
};
inline constexpr std::array kOperations = {OperationKind::kInstall, OperationKind::kUpgrade,
                                           OperationKind::kRevert, OperationKind::kUninstall};

const char* nameOf(OperationKind operation);

// The machines of the sample product, and what the operations make of them when nothing fails.
class Operations {
public:
    // Runs each operation once. Ends the process when one of them doesn't do what it should: then no failure
    // could be judged.
    Operations();

    // The machine before it.
    const Machine& machineBefore(OperationKind operation) const;
    // The state that it leaves, and the one that a failure must leave.
    const MachineState& stateAfter(OperationKind operation) const;
    const MachineState& stateBefore(OperationKind operation) const;
    // After the product has gone.
    const MachineState& cleanState() const { return clean_; }

    // A gate that counts from the right call on.
    static void prepareGate(OperationKind operation, CallGate& gate);
    static RunResult run(OperationKind operation, Machine& machine, CallGate& gate);
    // How many calls of the class it makes when nothing fails.
    int countCalls(OperationKind operation, CallClass callClass) const;

private:
    Machine cleanMachine_;
    Machine firstMachine_;
    MachineState clean_;
    MachineState first_;
    MachineState second_;
    std::array<std::array<int, 2>, kOperations.size()> counts_{};

    static Machine preparedMachine();
    Machine installedMachine() const;
    void tryOut();
};
