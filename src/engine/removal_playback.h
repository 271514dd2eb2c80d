#pragma once

#include "engine/removal_record.h"
#include "platform/platform.h"

class RemovalJournal;
class Report;

// Takes a removal back: goes through its journal from the last record to the first and gives the machine what
// it held before each change. A change is only taken back where the machine still holds what the removal left
// there; anything else is somebody else's, it stays and is named. No failure stops the walk, each is reported
// with the system's reason as a note. May be repeated, also by a later run: what has been taken back stays
// so.
//
// Files whose contents are in an archive don't come back here: what the removal put in their place goes, so
// that the archive can be unpacked afterwards (RestoreQuestions::rightsOf for their rights).
class RemovalPlayback {
public:
    // The real machine, and a journal that is open. All are borrowed.
    RemovalPlayback(const platform::Platform& machine, RemovalJournal& journal, Report& report)
        : machine_(machine), journal_(journal), report_(report) {}

    // False, which is reported, when the journal can't be read.
    bool isPossible();
    // True when everything came back. A journal that can't be read gives back nothing.
    bool run();

private:
    bool isReadable(const ReadRecords& read);
    bool takeBack(const std::vector<RemovalRecord>& records);
    bool broadcast(const std::vector<RemovalRecord>& records);

    platform::Platform machine_;
    RemovalJournal& journal_;
    Report& report_;
};
