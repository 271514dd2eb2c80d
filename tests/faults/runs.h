#pragma once

#include <string>
#include <vector>

#include "call_gate.h"
#include "machine.h"
#include "sample_product.h"

// What a run says of itself.
struct RunResult {
    bool succeeded = false;
    bool isToStartAgain = false;  // an interrupted run was taken back; the product has its earlier log again
    // Notes, boxes, lines about failures and the summary of errors, in their order.
    std::vector<std::string> said;

    bool says(const std::string& text) const;
    // Says this path and no longer one, with whatever separators.
    bool namesPath(const std::string& path) const;
};

// Each is a whole session without questions, all of whose calls pass the gate.
RunResult install(Machine& machine, CallGate& gate, SampleProduct::Version version);
// From the product's log, as the uninstaller's second stage does it. Without a log it fails.
RunResult uninstall(Machine& machine, CallGate& gate);
