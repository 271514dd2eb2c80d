#pragma once

#include <memory>
#include <string>

#include "support/debug_log.h"

class AnswersFile;
class GenericUI;

// Makes the front ends with windows. The program is handed one, so that it knows no toolkit.
class GraphicalFrontEnds {
public:
    virtual ~GraphicalFrontEnds() = default;

    // False: no window can be shown here, and `outReason` gets one line that says why, without a full stop.
    virtual bool isAvailable(std::string& outReason) = 0;
    // Only after isAvailable said yes. `answers` outlives the front end, the object outlives it as well.
    virtual std::unique_ptr<GenericUI> make(bool uninstall, AnswersFile& answers, DebugLog debugLog) = 0;
};
