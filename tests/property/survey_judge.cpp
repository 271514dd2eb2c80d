#include "survey_judge.h"

#include "product_life.h"

namespace {

std::string lineOf(const SurveyedRecord& record, const std::string& what) {
    return what + std::string(record.word) + " " + record.look.name + " (" +
           std::to_string(static_cast<int>(record.look.state)) + " " + record.look.note + ")";
}

}  // namespace

std::vector<std::string> SurveyJudge::incompleteRecords() {
    RecordSurvey survey(machine_.bundle());
    if (const auto reason = survey.read(ProductLife::kLog, ProductLife::kLog)) {
        return {"A new log can't be read: " + *reason};
    }
    std::vector<std::string> lines;
    for (const SurveyedRecord& record : survey.look()) {
        const bool isComplete =
            record.look.state == PlaceState::kAsMade || record.look.state == PlaceState::kNotNeeded;
        if (!isComplete) {
            lines.push_back(lineOf(record, "A verification doesn't find complete: "));
        }
    }
    if (!survey.isLogWhole()) {
        lines.push_back("A verification finds a new log damaged: " + survey.notes().front());
    }
    return lines;
}

void SurveyJudge::begin() {
    survey_ = std::make_unique<RecordSurvey>(machine_.bundle());
    survey_->read(ProductLife::kLog, ProductLife::kLog);
    before_ = survey_->look();
    facts_ = {archivedFiles(machine_.files, survey_->archivePath()), survey_->unrecordedFiles()};
}

std::vector<std::string> SurveyJudge::failedRecords() {
    std::vector<SurveyedRecord> after = survey_->look();
    const std::vector<RemovalOutcome> outcomes = removalOutcomes(before_, after, facts_);
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (outcomes[i] == RemovalOutcome::kFailed) {
            lines.push_back(lineOf(after[i], "A receipt calls failed: "));
        }
    }
    return lines;
}
