#include "engine/record_survey.h"

#include <algorithm>
#include <utility>

#include "engine/action_log_format.h"
#include "engine/action_log_reader.h"
#include "engine/changes/record_lookers.h"
#include "engine/line_reader.h"
#include "engine/log_head.h"
#include "engine/record_reader.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "support/p_file_stream.h"

namespace {

namespace Format = ActionLogFormat;

// No kind of change.
constexpr std::size_t kNoLooker = static_cast<std::size_t>(-1);

std::size_t lookerOf(std::string_view line) {
    const auto kinds = lookerKinds();
    const auto found =
        std::ranges::find_if(kinds, [&](const LookerKind& kind) { return line.starts_with(kind.tag); });
    return found == kinds.end() ? kNoLooker : static_cast<std::size_t>(found - kinds.begin());
}

bool changesNothing(std::string_view fields) {
    return fields.empty() || firstLogField(fields) == Format::kNone;
}

LogRecord recordOf(std::size_t looker, const std::string& fields, const std::string& former) {
    return {lookerKinds()[looker].tag, fields, former};
}

std::optional<std::string> whyNoFile(platform::FileSystem& files, const std::string& path) {
    if (path.empty()) {
        return "no file is named";
    }
    if (!files.exists(path)) {
        return "there is no such file";
    }
    if (files.isDirectory(path)) {
        return "it is a directory";
    }
    std::string target;
    const int status = files.resolveFile(path, target);
    return status == 0 ? std::nullopt : std::optional(platform::errorText(status));
}

}  // namespace

RecordSurvey::RecordSurvey(const platform::Platform& machine)
    : machine_(machine), context_{machine_, written_} {
    for (const LookerKind& kind : lookerKinds()) {
        lookers_.push_back(kind.make(context_));
    }
}

std::optional<std::string> RecordSurvey::read(const std::string& path, const std::string& registeredPath) {
    if (auto reason = readLog(path)) {
        return reason;
    }
    unrecorded_.push_back(platform::pathIdentity(registeredPath));
    readState(path, registeredPath);
    for (const Record& record : records_) {
        lookers_[record.looker]->expect(recordOf(record.looker, record.fields, record.former));
    }
    return std::nullopt;
}

std::optional<std::string> RecordSurvey::readLog(const std::string& path) {
    if (auto reason = whyNoFile(machine_.files, path)) {
        return reason;
    }
    PFileStream log(machine_.files);
    const int status =
        log.openFile(path, PFileStream::kGenericRead,
                     PFileStream::kShareRead | PFileStream::kShareWrite | PFileStream::kShareDelete,
                     PFileStream::kOpenExisting);
    if (status != 0) {
        return platform::errorText(status);
    }
    const LogHead head = readLogHead(log);
    readRecords(log, head.recordsStart);
    if (!head.isSound && records_.empty()) {
        return "it is no action log";
    }
    if (!head.isSound) {
        note("The variables of the install log are missing or damaged.");
    }
    readPlaces(log);
    return std::nullopt;
}

void RecordSurvey::readPlaces(PStream& log) {
    ActionLogReader reader(&log, DebugLog());
    archive_ = reader.readArchivePath().value_or("");
    for (const std::string& path : {archive_, reader.readDescriptionPath().value_or("")}) {
        if (!path.empty()) {
            unrecorded_.push_back(platform::pathIdentity(path));
        }
    }
}

void RecordSurvey::readRecords(PStream& log, std::int64_t start) {
    RecordReader records(log, start);
    while (records.next()) {
        takeLine(records.line(), records.former());
    }
    if (records.isTorn()) {
        note("The last record of the install log is not complete. Its change was never made.");
    }
    if (records.hasFailed()) {
        note("The install log can't be read to its end.");
    }
}

void RecordSurvey::takeLine(std::string_view line, std::string_view former) {
    const std::size_t looker = lookerOf(line);
    if (looker != kNoLooker) {
        records_.push_back({looker, std::string(nextLogField(line)), std::string(former)});
    } else if (!line.empty() && line != Format::kNoRecord) {
        ++damagedLines_;
    }
}

void RecordSurvey::note(std::string text) {
    isWhole_ = false;
    notes_.push_back(std::move(text));
}

void RecordSurvey::noteDamagedLines() {
    if (damagedLines_ > 0) {
        note(std::to_string(damagedLines_) + (damagedLines_ == 1 ? " line" : " lines") +
             " of the install log can't be read.");
    }
    damagedLines_ = 0;
}

// The log may be reached by another path than the one that the product was installed with.
void RecordSurvey::readState(const std::string& path, const std::string& registeredPath) {
    ProductState state(machine_.files, machine_.environment);
    written_ = state.load(registeredPath);
    std::string real;
    if (written_.isEmpty() && machine_.files.realPath(path, real) == 0) {
        written_ = state.load(real);
    }
    if (written_.isEmpty()) {
        notes_.emplace_back("It isn't known what the installation wrote: contents of files aren't compared.");
    }
}

std::vector<SurveyedRecord> RecordSurvey::look() {
    for (const auto& looker : lookers_) {
        looker->beginWalk();
    }
    std::vector<SurveyedRecord> found;
    std::vector<RecordLook> looks;
    for (const Record& record : records_) {
        looks.clear();
        lookers_[record.looker]->look(recordOf(record.looker, record.fields, record.former), looks);
        const bool isDamaged = looks.empty() && !changesNothing(record.fields);
        damagedLines_ += isDamaged && !hasLooked_ ? 1 : 0;
        for (RecordLook& look : looks) {
            found.push_back({lookerKinds()[record.looker].word, std::move(look)});
        }
    }
    hasLooked_ = true;
    noteDamagedLines();
    return found;
}

std::unordered_set<std::string> RecordSurvey::madeDirectories() {
    std::unordered_set<std::string> identities;
    std::vector<RecordLook> looks;
    for (const Record& record : records_) {
        if (lookerKinds()[record.looker].tag == Format::kDirectory) {
            lookers_[record.looker]->look(recordOf(record.looker, record.fields, record.former), looks);
        }
    }
    for (const RecordLook& look : looks) {
        identities.insert(look.identity);
    }
    return identities;
}
