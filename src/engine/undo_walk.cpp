#include "engine/undo_walk.h"

#include <algorithm>
#include <utility>

#include "engine/action_log_format.h"
#include "engine/changes/file_edit.h"
#include "engine/line_reader.h"
#include "engine/record_reader.h"
#include "engine/report.h"
#include "platform/path_identity.h"
#include "support/p_stream.h"

namespace {

namespace Format = ActionLogFormat;

LogRecord recordIn(std::string_view line, std::string_view tag, std::string_view former = {}) {
    return {tag, nextLogField(line), former};
}

}  // namespace

UndoWalk::UndoWalk(ChangeJob& job, std::function<bool()> isToEnd)
    : job_(job), report_(job.context.report), isToEnd_(std::move(isToEnd)) {
    for (const ChangeKind& kind : changeKinds()) {
        rows_.push_back({kind, kind.make(job)});
    }
}

bool UndoWalk::isToEnd() {
    const bool isAsked = isToEnd_ && isToEnd_();
    noteResult(!isAsked);
    return isAsked;
}

std::unordered_set<std::string> UndoWalk::replacedFiles(PStream& log, std::int64_t start) {
    RecordReader records(log, start);
    std::unordered_set<std::string> found;
    while (records.next()) {
        if (records.line().starts_with(Format::kFile)) {
            const LogRecord record = recordIn(records.line(), Format::kFile);
            found.insert(platform::pathIdentity(FileChange::replacedFile(record)));
        }
    }
    noteResult(!records.hasFailed());
    return found;
}

bool UndoWalk::undoRecords(PStream& log, std::int64_t start) {
    const bool isRead = undoFirstPass(log, start);
    report_.flushLines();
    report_.begin();
    if (isRead) {
        undoMainPass(log, start);
    } else {
        noteResult(false);
        report_.note("The install log can't be read to its end. Nothing else of it is undone.");
    }
    return isRead;
}

// Also counts the lines, which are the steps of the main pass. False when a line may have been missed: the
// main pass would delete what the edits are undone with.
bool UndoWalk::undoFirstPass(PStream& log, std::int64_t start) {
    RecordReader records(log, start);
    std::int64_t count = 0;
    for (; records.next() && !isToEnd(); ++count) {
        report_.pumpEvents();
        undo(records.line(), records.former(), UndoPass::kFirst);
        if (count % Report::kStepsPerFlush == 0) {
            report_.flushLines();
        }
    }
    if (records.isTorn()) {
        report_.note("The last record of the install log is not complete. Its change was never made.");
    }
    report_.expectSteps(count);
    return !records.hasFailed();
}

void UndoWalk::undoMainPass(PStream& log, std::int64_t start) {
    RecordReader records(log, start);
    while (records.next() && !isToEnd()) {
        report_.pumpEvents();
        undo(records.line(), records.former(), UndoPass::kMain);
        report_.finishStep();
    }
    noteResult(!records.hasFailed());
}

void UndoWalk::undo(std::string_view line, std::string_view former, UndoPass pass) {
    for (Row& row : rows_) {
        const std::string_view tag = row.kind.tagOf(line);
        if (tag.empty() || row.kind.pass != pass) {
            continue;
        }
        const LogRecord record = recordIn(line, tag, former);
        if (!isPostponed(row, record, line)) {
            noteResult(row.change->undo(record));
        }
        return;
    }
}

// Edits come first, so their scripts are known before a record of a file could delete one.
bool UndoWalk::isPostponed(const Row& row, const LogRecord& record, std::string_view line) {
    if (record.tag == Format::kModifyFile) {
        job_.kept.hold(FileEdit::scriptOf(record));
    }
    if (row.kind.tags[0] != Format::kFile || !job_.kept.postponesFile(FileChange::createdFile(record))) {
        return false;
    }
    postponed_.push_back({std::string(line), std::string(record.former)});
    return true;
}

void UndoWalk::finish(UndoEnd end) {
    if (end != UndoEnd::kAfterProgress && isToEnd()) {
        return;
    }
    for (Row& row : rows_) {
        if (row.kind.end == end) {
            noteResult(row.change->finishUndo());
        }
    }
}

void UndoWalk::deletePostponed(std::string_view path) {
    const auto others =
        std::stable_partition(postponed_.begin(), postponed_.end(), [&](const Postponed& record) {
            return KeptFiles::isSameFile(FileChange::createdFile(recordIn(record.line, Format::kFile)), path);
        });
    std::vector<Postponed> rest(std::make_move_iterator(others), std::make_move_iterator(postponed_.end()));
    postponed_.erase(others, postponed_.end());
    deletePostponed();
    postponed_ = std::move(rest);
}

void UndoWalk::deletePostponed() {
    for (const Postponed& record : std::exchange(postponed_, {})) {
        undo(record.line, record.former, UndoPass::kMain);
        if (hasFailed()) {
            return;
        }
    }
}
