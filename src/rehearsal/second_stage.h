#pragma once

#include <string>

#include "rehearsal/rehearsed_machine.h"

// What the first stage of an uninstallation leaves to the second one: a copy of the action log, and the
// program as a copy of itself. The copy of the log is gone with this object.
class SecondStage {
public:
    // The machine is borrowed and has the log.
    SecondStage(RehearsedMachine& machine, const std::string& actionLog);
    ~SecondStage();
    SecondStage(const SecondStage&) = delete;
    SecondStage& operator=(const SecondStage&) = delete;

    const std::string& logCopy() const { return logCopy_; }

private:
    RehearsedMachine& machine_;
    std::string logCopy_;
};
