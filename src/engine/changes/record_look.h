#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/change.h"
#include "platform/platform.h"

class WrittenSums;

// What the machine holds now in the place of a recorded change.
enum class PlaceState {
    kAsMade,      // what the installation made, as far as that is known
    kDifferent,   // something else
    kFormer,      // the earlier value that the record would bring back
    kOthers,      // what was there before, and isn't the product's (engine/changes/former_state.h)
    kAbsent,      // nothing of the change
    kNotNeeded,   // the same, and the change would find nothing to do
    kUnreadable,  // it can't be looked at
};

// What the undo of a record does with what it finds.
enum class UndoRule {
    kRemoves,            // it goes, or an earlier value comes back
    kRestoresUnchanged,  // an earlier file comes back in the place of an unchanged one
    kKeepsChanged,       // what a user has changed stays
    kTakesOne,           // of several equal ones in the place one goes
    kRemovesIfUnused,    // it goes unless it holds something
};

// One thing that a record made: a file, one level of a directory, one protocol of a port.
struct RecordLook {
    std::string name;  // for people
    PlaceState state = PlaceState::kAbsent;
    UndoRule rule = UndoRule::kRemoves;
    std::string note = {};  // what else is to be said; may be empty
    // Of kRestoresUnchanged and kTakesOne: two looks with the same one found the same; empty where it isn't
    // known.
    std::string content = {};
    // Of a file, a shortcut, a directory or a key: the same for all spellings of its name.
    std::string identity = {};
    // Of kRemovesIfUnused: the identities of what it holds.
    std::vector<std::string> holds = {};
};

// What every kind of look works with. All of it is borrowed and outlives the looks.
struct LookContext {
    platform::Platform machine;
    const WrittenSums& written;  // what the installation is known to have written
};

// The look of one kind of change at its own records. Nothing on the machine is changed by it. An object may
// walk over the same records more than once, on one thread; what the first walk has read of the product's own
// scripts serves the later ones, when these have gone.
class RecordLooker {
public:
    RecordLooker() = default;
    RecordLooker(const RecordLooker&) = delete;
    RecordLooker& operator=(const RecordLooker&) = delete;
    virtual ~RecordLooker() = default;

    // Called once for each record of the log before the first walk: several records of one thing are read in
    // another way than one.
    virtual void expect(const LogRecord&) {}
    // Called at the start of each walk, which goes in the order of the log: what a record added once counts
    // once.
    virtual void beginWalk() {}
    // Adds what the record made to `outLooks`; nothing for a record that changes nothing or can't be read.
    virtual void look(const LogRecord& record, std::vector<RecordLook>& outLooks) = 0;
};

// One row for each tag of a record.
struct LookerKind {
    std::string_view tag;
    std::string_view word;  // for people and scripts
    std::unique_ptr<RecordLooker> (*make)(const LookContext& context);
};
