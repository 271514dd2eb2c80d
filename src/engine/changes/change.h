#pragma once

#include <string_view>

#include "platform/platform.h"
#include "support/debug_log.h"

class ActionLogWriter;
class DescriptionTags;
class Report;
class SystemOperations;

// What every kind of change works with, made once for a job. All of it is borrowed and outlives the changes.
struct ChangeContext {
    platform::Platform machine;
    SystemOperations& system;
    DescriptionTags& tags;
    ActionLogWriter& log;
    Report& report;
    DebugLog debugLog;
};

// One line of an action log: its tag, and the fields after it, separated by TABs.
struct LogRecord {
    std::string_view tag;
    std::string_view fields;
    // What the change was going to replace (engine/changes/former_state.h); empty when that isn't said. If
    // that is there, the change was never made, or isn't any more, and nothing is to be taken back.
    std::string_view former = {};
};

// What became of a change that was to be taken back.
enum class UndoResult {
    kDone,
    kGone,    // an earlier walk or the user has taken it back already: no failure, so that walks can be
              // repeated
    kFailed,  // it is still there
};

// One kind of change to a machine: it reads its elements of the description, makes the change, writes its
// record and takes the change back from that record. Nobody else knows the record's form. An object serves
// one job, an installation or an uninstallation, on the session's thread.
//
// An earlier value that a record can't hold whole is never lost: that change fails and nothing is written.
//
// A record is in the log before its change is made: a run may be killed at any moment. So the undo of a
// record whose change was never made leaves the machine as it is.
//
// A log may hold records of several installations of one product, the oldest first, and a walk that failed is
// repeated over the same records. So an undo whose record is met again, or whose change has gone, is no
// failure, and of several earlier values of one thing the oldest comes back.
class Change {
public:
    Change() = default;
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;
    virtual ~Change() = default;

    // Makes every change of this kind that the description asks for. False when one failed, which has been
    // reported.
    virtual bool apply() = 0;
    // Takes one change back. Kinds that have to wait until all records are known only note it here. False
    // when the change could not be taken back and that makes the uninstallation a failure.
    virtual bool undo(const LogRecord& record) = 0;
    // Called once after the last record.
    virtual bool finishUndo() { return true; }
};
