#pragma once

#include <string>
#include <string_view>
#include <vector>

class RemovalJournal;

// How far the work of a run has come, for a later run that finds it unfinished.
enum class WorkStage {
    kBegun,       // nothing of a new installation is on the machine yet
    kInstalling,  // the temporary log says what is, or the published one if that has gone
    kInstalled,   // all of it is: what was removed for it counts as gone
    kUndone,      // nothing of it is any more
    kEnded,       // the run ended and has said what it keeps; nobody touches that
};

// Where the records of an installation are while it works, and where they go in the end: empty for nowhere.
struct InstallationPlaces {
    std::string temporaryLog;
    std::string temporaryArchive;
    std::string log;
    std::string archive;
    bool continuesEarlier = false;  // they hold those of the installation that was there before
};

// What the notes in a journal say of the run that wrote them.
struct UnfinishedWork {
    struct Removed {
        std::string application;
        std::string log;
        bool isForGood = false;  // nothing was kept of it
    };

    std::string product;  // whose setup it was
    WorkStage stage = WorkStage::kBegun;
    int attempts = 0;         // to take it back that didn't bring back everything
    std::string description;  // of the product: a copy, because the product's own may not be there yet
    InstallationPlaces places;
    bool isPartlyUndone = false;  // what is left of the installation is recorded in the journal's directory
    std::vector<Removed> removed;

    // Whether it is about a product of this name, or one whose log has this path.
    bool concerns(std::string_view name) const;
    bool concernsLog(std::string_view log) const;
};

// Writes and reads the notes of one journal, which is borrowed and open. A status is that of the journal.
class WorkNotes {
public:
    explicit WorkNotes(RemovalJournal& journal) : journal_(journal) {}

    int begin(std::string_view product, std::string_view description);
    int installing(const InstallationPlaces& places);
    int stage(WorkStage stage);
    int attempt(int number);
    int partlyUndone();

    // The notes aren't believed: a file of the run has to lie in the journal's own directory, every other
    // path has to be one, and a stage that this version doesn't know counts as ended.
    UnfinishedWork read() const;

private:
    std::string text(std::string_view name) const;
    std::string ownFile(std::string_view name) const;
    std::string path(std::string_view name) const;

    RemovalJournal& journal_;
};

// Whether the path is one of a file in the directory itself.
bool isFileIn(std::string_view directory, std::string_view path);
// The name of a numbered note.
std::string numberedNote(std::string_view name, std::size_t number);
