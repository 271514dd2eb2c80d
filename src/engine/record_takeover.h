#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/change.h"
#include "engine/earlier_log.h"

class ActionLogWriter;
class BackupFile;
struct BackupEntry;
class FileHistory;
class ProductState;

// Continues the records of the installation that is there already, so that one uninstallation gives back the
// state before the first installation: its records come before those of the new one, and the contents of the
// user's files go into the new archive. What it left on the disk stays as it was until the new records take
// their place.
class RecordTakeover {
public:
    // All of it outlives this object.
    RecordTakeover(const ChangeContext& context, FileHistory& history)
        : context_(context), history_(history) {}

    // Reads the log at this path, if there is one. False when it can't be opened, which is reported: a new
    // log in its place would lose what it holds. A damaged one is reported and used as far as it goes. Where
    // it gives no archive, the one at `describedArchive` is the earlier one.
    bool read(const std::string& logPath, const std::string& describedArchive);

    // Whether there was a log.
    bool hasEarlierLog() const { return log_.state != EarlierLog::State::kNone; }
    // The earlier archive; empty when there is none.
    const std::string& archivePath() const { return log_.archivePath; }

    // Copies the entries of the earlier archive, each path once; without a log only those whose files are
    // still what was installed. One that is damaged, or has been changed since the installation, is reported
    // and used as far as it goes. False when `archive` can't be written.
    bool copyArchive(BackupFile& archive);
    // Writes the earlier records into an open log after its head, those of files and of lines that were added
    // to text files excepted: the new installation decides on them.
    void writeRecords(ActionLogWriter& log);
    // Takes the lines out again that were added to text files, while the script that says which is still
    // there; the new installation adds its own. This is the first change to the machine. Writes the records
    // of those that stay.
    void revertEdits(ActionLogWriter& log);
    // Writes the records of files that the new installation has none of.
    void writeRemainingFiles(ActionLogWriter& log);

private:
    bool takeFile(std::string_view line);
    bool revertEdit(std::string_view line);
    void findArchive(const std::string& describedArchive);
    bool copyEntries(BackupFile& from, BackupFile& to);
    bool isOutdated(BackupFile& archive, const BackupEntry& entry);
    void warn(const std::string& text);

    ChangeContext context_;
    FileHistory& history_;
    std::string logPath_;
    EarlierLog log_;
};
