#include "installer/verify_option.h"

#include <algorithm>

#include "engine/record_survey.h"
#include "installer/receipt_file.h"
#include "installer/record_list.h"
#include "installer/start_messages.h"
#include "platform/platform.h"

namespace {

constexpr int kNotDone = -1;
constexpr int kDiffers = 1;

enum State : std::size_t { kComplete, kChanged, kMissing, kUnknown };

State stateOf(PlaceState place) {
    switch (place) {
        case PlaceState::kAsMade:
        case PlaceState::kNotNeeded:
            return kComplete;
        case PlaceState::kDifferent:
        case PlaceState::kFormer:
        case PlaceState::kOthers:
            return kChanged;
        case PlaceState::kAbsent:
            return kMissing;
        case PlaceState::kUnreadable:
            break;
    }
    return kUnknown;
}

std::string noteOf(const RecordLook& look) {
    const bool isEarlier = look.state == PlaceState::kFormer || look.state == PlaceState::kOthers;
    return isEarlier && look.note.empty() ? "as it was before the installation" : look.note;
}

RecordList listOf(RecordSurvey& survey, const std::string& log) {
    RecordList list{
        "verification", log, survey.isLogWhole(), {"complete", "changed", "missing", "unknown"}, {}, {}};
    for (const SurveyedRecord& record : survey.look()) {
        list.rows.push_back({stateOf(record.look.state), record.word, record.look.name, noteOf(record.look)});
    }
    list.notes = survey.notes();
    list.isGood = survey.isLogWhole() &&
                  std::ranges::all_of(list.rows, [](const auto& row) { return row.state == kComplete; });
    return list;
}

}  // namespace

int verifyInstallation(const VerifyRequest& request, platform::Platform& platform, StartMessages& messages) {
    const std::string log = ReceiptFile::absolutePath(request.log, platform.environment);
    const std::string receipt = ReceiptFile::absolutePath(request.receipt.value_or(""), platform.environment);
    RecordSurvey survey(platform);
    std::optional<std::string> problem = survey.read(log, log);
    if (problem && !log.empty()) {
        problem = log + ": " + *problem;
    } else if (!problem && request.receipt) {
        problem = ReceiptFile::problemOf(receipt, log, platform.files);
    }
    if (problem) {
        messages.note("ERROR: The installation can't be verified: " + *problem);
        return kNotDone;
    }
    const RecordList list = listOf(survey, log);
    if (!request.isQuiet) {
        messages.print(listAsText(list));
    }
    const int status = request.receipt ? ReceiptFile::write(list, receipt, platform.files) : 0;
    if (status != 0) {
        messages.note(ReceiptFile::failureText(receipt, status));
        return kNotDone;
    }
    return list.isGood ? 0 : kDiffers;
}
