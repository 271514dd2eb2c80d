#include "operations.h"

#include <cstdio>
#include <cstdlib>

namespace {

using SampleProduct::Version;

constexpr const char* kNames[] = {"install", "upgrade", "revert", "uninstall"};

void require(bool holds, const char* what, const RunResult& outcome,
             const std::vector<Difference>& differences) {
    if (holds && differences.empty()) {
        return;
    }
    std::printf("Without any fault: %s\n", what);
    for (const std::string& line : outcome.said) {
        std::printf("  said: %s\n", line.c_str());
    }
    for (const Difference& difference : differences) {
        std::printf("  %s\n", difference.text().c_str());
    }
    std::exit(1);
}

}  // namespace

const char* nameOf(OperationKind operation) {
    return kNames[static_cast<int>(operation)];
}

Machine Operations::preparedMachine() {
    Machine machine;
    SampleProduct::prepare(machine);
    return Machine(machine);
}

Machine Operations::installedMachine() const {
    Machine machine(cleanMachine_);
    CallGate gate("install");
    const RunResult outcome = install(machine, gate, Version::kFirst);
    require(outcome.succeeded, "the installation fails", outcome, {});
    return Machine(machine);
}

Operations::Operations()
    : cleanMachine_(preparedMachine()),
      firstMachine_(installedMachine()),
      clean_(cleanMachine_.state()),
      first_(firstMachine_.state()) {
    tryOut();
}

void Operations::tryOut() {
    for (const OperationKind operation : kOperations) {
        Machine machine(machineBefore(operation));
        CallGate gate(nameOf(operation));
        prepareGate(operation, gate);
        const RunResult outcome = run(operation, machine, gate);
        const bool isToSucceed = operation != OperationKind::kRevert;
        require(outcome.succeeded == isToSucceed, nameOf(operation), outcome, {});
        if (operation == OperationKind::kUpgrade) {
            second_ = machine.state();
            Machine last(machine);
            CallGate again("uninstall");
            const RunResult end = uninstall(last, again);
            require(end.succeeded, "version 2 can't be uninstalled", end,
                    differencesOf(clean_, last.state()));
        }
        require(true, "another end than expected", outcome,
                differencesOf(stateAfter(operation), machine.state()));
        counts_[static_cast<std::size_t>(operation)] = {gate.count(CallClass::kChanging),
                                                        gate.count(CallClass::kReading)};
    }
}

const Machine& Operations::machineBefore(OperationKind operation) const {
    return operation == OperationKind::kInstall ? cleanMachine_ : firstMachine_;
}

const MachineState& Operations::stateBefore(OperationKind operation) const {
    return operation == OperationKind::kInstall ? clean_ : first_;
}

const MachineState& Operations::stateAfter(OperationKind operation) const {
    switch (operation) {
        case OperationKind::kUpgrade:
            return second_;
        case OperationKind::kUninstall:
            return clean_;
        default:
            return first_;
    }
}

void Operations::prepareGate(OperationKind operation, CallGate& gate) {
    if (operation == OperationKind::kRevert) {
        gate.startAtLogLine("Reverting installation!");
    }
}

RunResult Operations::run(OperationKind operation, Machine& machine, CallGate& gate) {
    switch (operation) {
        case OperationKind::kInstall:
            return install(machine, gate, Version::kFirst);
        case OperationKind::kUpgrade:
            return install(machine, gate, Version::kSecond);
        case OperationKind::kRevert:
            return install(machine, gate, Version::kBrokenSecond);
        case OperationKind::kUninstall:
            return uninstall(machine, gate);
    }
    return {};
}

int Operations::countCalls(OperationKind operation, CallClass callClass) const {
    return counts_[static_cast<std::size_t>(operation)][static_cast<std::size_t>(callClass)];
}
