#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/changes/change_table.h"

class PStream;

// The records of one log on their way back: each is looked up in the table of changes and undone. Only what
// an uninstallation needs to be repeated (engine/kept_files.h) waits for the end.
class UndoWalk {
public:
    // `job` outlives this object. `isToEnd` says whether the walk was asked to end; it is asked before each
    // record, and from then on nothing more is undone.
    UndoWalk(ChangeJob& job, std::function<bool()> isToEnd);

    // The files that the installation replaced, by the records from an offset of the log on: the identities
    // of their paths (platform/path_identity.h).
    std::unordered_set<std::string> replacedFiles(PStream& log, std::int64_t start);
    // Undoes the records from an offset of the log on; a last one that was written in part is only reported,
    // because its change was never made. False when the log can't be read to its end: then only edits are
    // undone, and what the records refer to must stay.
    bool undoRecords(PStream& log, std::int64_t start);
    // What the kinds of change have to do at this moment. Not after the walk was asked to end, but what makes
    // the changes known to others is done in any case.
    void finish(UndoEnd end);
    // Deletes one of the files that were postponed, and all that are left of them. The first one that stays
    // keeps the rest. To be called after the release.
    void deletePostponed(std::string_view path);
    void deletePostponed();

    // A walk that ends early has failed.
    bool isToEnd();
    void noteResult(bool done) { failed_ = failed_ || !done; }
    bool hasFailed() const { return failed_; }

private:
    struct Row {
        const ChangeKind& kind;
        std::unique_ptr<Change> change;
    };

    bool undoFirstPass(PStream& log, std::int64_t start);
    void undoMainPass(PStream& log, std::int64_t start);
    void undo(std::string_view line, std::string_view former, UndoPass pass);
    bool isPostponed(const Row& row, const LogRecord& record, std::string_view line);

    ChangeJob& job_;
    Report& report_;
    std::function<bool()> isToEnd_;
    std::vector<Row> rows_;
    struct Postponed {
        std::string line;
        std::string former;
    };

    std::vector<Postponed> postponed_;  // records of files
    bool failed_ = false;
};
