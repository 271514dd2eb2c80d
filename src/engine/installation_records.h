#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/engine_parts.h"
#include "engine/record_takeover.h"
#include "engine/work_notes.h"

class InstallationMark;
struct ChangeJob;
struct LoggedVariable;

// The variables that an action log keeps: those of the store, in its order, that aren't excluded from logs.
std::vector<LoggedVariable> loggedVariables(const ProductModel& model);

// The records of one installation, from their temporary names to their final ones: the action log, the backup
// archive, and the sums of what was written. Log and archive are files of this user alone: they may hold what
// nobody else could read.
class InstallationRecords {
public:
    // All of them outlive this object. Without a mark no later run finds the records if this one is killed.
    InstallationRecords(const EngineParts& parts, ChangeJob& job, InstallationMark* mark = nullptr);

    // Opens log and archive under temporary names. False when that can't be done, which is reported; nothing
    // is left then.
    bool open();
    // Writes the log's head, and takes over the records and the archive of the installation that is there
    // already. They are on the disk then. False when that can't be done, which is reported; nothing is left
    // then, and what was there is as it was.
    bool begin();
    // Brings both to the disk, and then to the paths that the description gives, over what is there; without
    // such a path the file is deleted. False when something didn't reach the disk, which is reported. A file
    // that could not be published stays under its temporary name, since it may hold the only copy of the
    // user's files; where is said on the screen.
    bool publish();
    // Where the log is after that; empty where it was deleted, because the description gives it no path.
    const std::string& publishedLog() const { return publishedLog_; }
    // Whether `begin` took over those of an earlier installation.
    bool continueEarlierOnes() const { return takeover_.hasEarlierLog(); }
    // Removes what `open` made. For an installation that doesn't come to `begin`.
    void discard();

private:
    std::string newName();
    bool openLog();
    bool openArchive();
    void reportUnopened(const char* what, const std::string& path, int status);
    void reportFault(const std::string& path, int status);
    std::string archivePath();
    bool writeHead();
    bool closeLog();
    bool closeArchive();
    bool noteInstalling();
    void noteFinalPlaces();
    bool publishFile(const char* what, const std::string& from, const std::string& to);
    void handOver(const char* what, const std::string& path);
    int copyPrivately(const std::string& from, const std::string& to);
    void removeEarlierArchive();
    void addSumsOfEditedFiles();
    void addSumsOfArchives();
    void keepSums();
    void report(const std::string& text);

    EngineParts parts_;
    ChangeJob& job_;
    InstallationMark* mark_;
    InstallationPlaces places_;  // as they were noted
    RecordTakeover takeover_;
    std::string temporaryLog_;
    std::string temporaryArchive_;
    std::string publishedLog_;
};
