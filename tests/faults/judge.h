#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "call_gate.h"
#include "operations.h"

// What became of a case, the best first.
enum class Verdict {
    kUnharmed,   // the run did what it should: the fault didn't matter, or was made good
    kTakenBack,  // the run failed, and everything is as it was before
    kRepaired,   // a following run brought everything to its end
    kLoss,       // something stays that the manual names
};
inline constexpr int kVerdictCount = 4;

struct Judgement {
    std::string call;  // what failed, or where the program ended
    Verdict verdict = Verdict::kUnharmed;
    std::set<std::string> losses;       // the names of those in allowed_losses.h
    std::vector<std::string> findings;  // empty when all is well
    std::vector<std::string> said;      // by the run
};

// Runs the operation with the fault and judges what it says and leaves, and what following runs without
// faults make of that.
Judgement judgeFault(const Operations& operations, OperationKind operation, const FaultPlan& plan);

// The machine on which the program ended in the operation: what do following runs make of it?
Judgement judgeKill(const Operations& operations, OperationKind operation, const Machine& machine);
