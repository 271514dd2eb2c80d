#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "engine/engine_parts.h"
#include "engine/removal_backups.h"
#include "engine/work_notes.h"

class Report;

// The mark that an installation is at work, in the journal of its session: what a later run needs if this one
// is killed. It goes with the journal at the session's end (RemovalBackups::release).
class InstallationMark {
public:
    // All of them are borrowed and outlive this object.
    InstallationMark(const EngineParts& parts, RemovalBackups& backups) : parts_(parts), backups_(backups) {}

    // Opens the journal, with the product's name and a copy of its description, unless that is done. False,
    // which is reported, when it can't be written: then nothing may be changed. On a machine without a state
    // directory there is no mark, and that is true.
    bool open(Report& report);
    // Where a file of this path is to be while the session works.
    std::string placeOf(const std::string& path) const { return backups_.placeOf(path); }
    // Records that no log of an earlier installation holds any more, as in RemovalBackups.
    const std::vector<std::string>& leftDirectories() const { return backups_.leftDirectories; }

    // On the disk before the first change. False, which is reported, when it can't be written.
    bool noteInstalling(const InstallationPlaces& places, Report& report);
    // The installation is complete, and a later run has nothing to take back.
    void noteInstalled();
    // The records couldn't be published: they stay where they are, and a later run takes back what they say
    // unless this one does.
    void keepRecords() {
        backups_.holdsRecords = backups_.journal().isOpen();
        backups_.isToBeContinued = backups_.holdsRecords;
    }

private:
    int openJournal();
    bool reportFailure(int status, Report& report);

    EngineParts parts_;
    RemovalBackups& backups_;
};
