#pragma once

#include <string>
#include <vector>

#include "engine/record_survey.h"
#include "engine/removal_outcome.h"
#include "platform/memory/memory_platform.h"

// What a survey by the product's log (engine/record_survey.h) says, compared with what happened.
class SurveyJudge {
public:
    explicit SurveyJudge(MemoryPlatform& machine) : machine_(machine) {}

    // After an installation that reported success: what isn't complete, one line each.
    std::vector<std::string> incompleteRecords();

    // Before an uninstallation; a log that can't be read is none to judge.
    void begin();
    // After one that reported success: what a receipt would call failed.
    std::vector<std::string> failedRecords();

private:
    MemoryPlatform& machine_;
    std::unique_ptr<RecordSurvey> survey_;
    std::vector<SurveyedRecord> before_;
    RemovalFacts facts_;
};
