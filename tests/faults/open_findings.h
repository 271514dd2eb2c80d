#pragma once

#include <string>
#include <vector>

#include "judge.h"

// A defect that is known and not mended yet. Its findings are counted apart, and the full run fails as long
// as there are any; a row that no longer occurs has to go.
struct OpenFinding {
    const char* name;
    const char* operation;           // empty: any
    const char* error;               // how the word for the error begins, or what it contains after a '*'
    std::vector<std::string> calls;  // parts of the call; empty: any
    std::vector<Fault> faults;       // empty: any
};

const std::vector<OpenFinding>& openFindings();
// The row of the finding; null when it is a new one.
const OpenFinding* openFindingOf(const std::string& operation, const std::string& error,
                                 const std::string& call, const Finding& finding);
