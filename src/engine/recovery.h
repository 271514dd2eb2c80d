#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/engine_parts.h"
#include "engine/removal_backups.h"
#include "engine/report.h"
#include "engine/work_notes.h"

class NestedSessionFactory;

// Takes back what a run left unfinished that was killed: first what it had installed, by the log of that,
// then what it had removed for it, by the journal. It can be killed itself and repeated. What can't be
// brought back is named with the reason and stays on the disk.
class Recovery {
public:
    enum class Outcome {
        kNothing,     // there was nothing of that kind
        kRecovered,   // the machine isn't what it was when the session looked at it first
        kDeclined,    // the user doesn't want it: nothing was changed
        kIncomplete,  // something couldn't be brought back; another run tries that once more
        kBusy,        // the run is still alive: nothing was changed
    };
    // Whose work is meant: that of runs for these products, or for ones with these action logs.
    struct Concern {
        std::vector<std::string> products;  // the session's own first; its lock is held
        std::vector<std::string> logs;
    };

    // All of them are borrowed and outlive this object.
    Recovery(const EngineParts& parts, NestedSessionFactory& sessions, ErrorList& errors)
        : parts_(parts), sessions_(sessions), errors_(errors) {}

    // `asks`: the user decides about each of them; otherwise all are taken back.
    Outcome run(const Concern& concern, bool asks, Report& report);

private:
    enum class Undo {
        kDone,
        kRecorded,    // what stays is in the product's own records
        kPartly,      // what stays has been named
        kImpossible,  // nothing was tried
    };

    Outcome look(const std::string& directory, const Concern& concern, bool asks, Report& report);
    void sweep(const std::string& directory);
    Outcome recover(const std::string& directory, bool asks, Report& report);
    void clearStateDirectory();
    void clearEnd(const UnfinishedWork& work, Report& report);
    bool goesOn(const UnfinishedWork& work);
    bool isUnfinished(const UnfinishedWork& work, RemovalBackups& backups);
    bool confirm(const UnfinishedWork& work, Report& report);
    bool takeBack(const UnfinishedWork& work, RemovalBackups& backups, Report& report);
    Undo takeInstallationBack(const UnfinishedWork& work, RemovalBackups& backups, Report& report);
    int copyLog(const UnfinishedWork& work, const std::string& log, const std::string& copy);
    bool undo(const std::string& log, bool makesRoom, Report& report);
    void clearRecords(const UnfinishedWork& work, const std::string& log);
    bool keepOnRecord(const UnfinishedWork& work, const std::string& log, Report& report);
    Outcome giveUp(const UnfinishedWork& work, RemovalBackups& backups, Report& report);
    void dropStaleEntries(const UnfinishedWork& work, Report& report);

    EngineParts parts_;
    NestedSessionFactory& sessions_;
    ErrorList& errors_;
};

// A log by which a session can begin that is to uninstall the product of the log at this path, which isn't
// there because a run was killed before it published it. Empty when there is no such run.
std::string unfinishedLog(const platform::Platform& machine, std::string_view log);
