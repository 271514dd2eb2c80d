#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "engine/record_survey.h"

// What became of a recorded thing in an uninstallation.
enum class RemovalOutcome {
    kGone,
    kPutBack,      // what was there before is there again
    kLeftChanged,  // left, because the user has changed it
    kLeftForeign,  // left, because it isn't the product's, or holds what isn't
    kFailed,       // still there, or it can't be looked at
};

// What else has to be known to tell the outcomes. All by identities (platform/path_identity.h).
struct RemovalFacts {
    std::unordered_set<std::string> archived;  // files whose earlier content was kept
    std::vector<std::string> ownFiles;         // files of the product that have no record
};

// The outcomes of the records of two looks of one survey, before and after the uninstallation; in the same
// places, and the looks `after` get notes where something is to be said.
std::vector<RemovalOutcome> removalOutcomes(const std::vector<SurveyedRecord>& before,
                                            std::vector<SurveyedRecord>& after, const RemovalFacts& facts);

// The files whose earlier content is in the archive at `path`, as far as it can be read.
std::unordered_set<std::string> archivedFiles(platform::FileSystem& files, const std::string& path);
