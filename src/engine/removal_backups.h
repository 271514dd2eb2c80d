#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/removal_journal.h"
#include "platform/platform.h"

class JournaledMachine;

// The saved files of an installation that was removed for another one.
struct UninstallBackup {
    std::string productName;
    std::string archivePath;
    std::string directoriesPath;  // of a text: the directories that the installation had made
};

// A file that can't be in an archive, because it is one itself, or because the new installation may put its
// own in its place: the copy of it, with its rights.
struct NestedBackup {
    std::string originalPath;
    std::string copyPath;
};

// What brings the installations back that a session removed: the saved files, and the journal of everything
// else that the removals took from the machine. All of it lies in the directory of the journal, as far as
// there is one, and goes with the session's end, unless it is all that is left of an installation.
class RemovalBackups {
public:
    // What the machine refers to is borrowed and outlives this object.
    explicit RemovalBackups(const platform::Platform& machine);
    ~RemovalBackups();
    RemovalBackups(const RemovalBackups&) = delete;
    RemovalBackups& operator=(const RemovalBackups&) = delete;

    std::vector<UninstallBackup> uninstallBackups;
    std::vector<NestedBackup> nestedBackups;
    // Records of an installation whose removal wasn't complete and has left no log: the directories that may
    // still be there. The new installation continues them.
    std::vector<std::string> leftDirectories;
    // An installation was removed, and neither a new one nor its own return is complete.
    bool isOnlyCopy = false;
    // Not everything could be taken back: a later run tries it once more.
    bool isToBeContinued = false;
    // The journal's directory holds records of the new installation that have no other place.
    bool holdsRecords = false;

    // The machine on which removals can be taken back. Opens the journal if that isn't done yet; throws
    // InstallerError when it can't be opened. Nothing that can be lost may be removed then.
    platform::Platform openMachine();
    // Goes on with what another run left in this directory: its journal, and what its notes say of archives
    // and copies, as far as they lie there. False when there is no journal that can be read.
    bool resume(std::string_view directory);
    // Whether there is that machine; it is the one for whatever else has to be taken back with the removals.
    bool isOpen() const { return machine_ != nullptr; }
    RemovalJournal& journal() { return journal_; }

    // The place in the journal's directory of a file with this path, or the path itself without a journal.
    std::string placeOf(const std::string& path) const;
    // Writes down for a later run that a product is removed, and what is there to bring it back. False when
    // it can't be written.
    bool note(const std::string& application, const std::string& log);
    // The second of these alone.
    bool noteBackups();
    // Likewise, of a product of which nothing is kept.
    bool noteForGood(const std::string& application, const std::string& log);

    // The product of this log goes for good. The levels of the state directory that were made for it can't,
    // as long as the journal lies there: they go with that. Nothing without a journal.
    void takeLevelsOf(const std::string& log);

    bool isEmpty() const { return !isOpen() && uninstallBackups.empty() && nestedBackups.empty(); }
    // For the user: where everything is.
    std::vector<std::string> places() const;
    // Deletes all of it. What a later run is to take up stays as it is; what is the only copy stays too, with
    // a note that tells later runs to leave it alone.
    void release();

private:
    RemovalJournal::Notes removalNotes(const std::string& application, const std::string& log);
    RemovalJournal::Notes backupNotes() const;
    void adoptBackups();
    std::string ownFile(std::string_view note, std::size_t number) const;

    platform::Platform real_;
    RemovalJournal journal_;
    std::unique_ptr<JournaledMachine> machine_;
    int applications_ = 0;
};
