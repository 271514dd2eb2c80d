#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "engine/removal_record.h"
#include "support/p_file_stream.h"

namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// What a removal takes from a machine, written down before it does so, in a private directory below the state
// directory: the records, and the files that nothing else has a copy of. From that directory alone a removal
// can be taken back, also by a later run; see removal_journal_format.md. One thread.
//
// Statuses are 0, the system's error number, or -1.
class RemovalJournal {
public:
    enum class Durability {
        kWritten,  // outlives this process
        kFlushed,  // outlives the machine's power
    };

    // Both are borrowed: the real machine's, not the journaled one's.
    RemovalJournal(platform::FileSystem& files, platform::Environment& environment);
    // Closes; what is on the disk stays there.
    ~RemovalJournal() = default;
    RemovalJournal(const RemovalJournal&) = delete;
    RemovalJournal& operator=(const RemovalJournal&) = delete;

    // Makes the directory, and the state directory if that is missing, with an empty journal. After a failure
    // nothing of it is left.
    int open();
    // Goes on with the journal in this directory, which another run left. Fails without one.
    int resume(std::string_view directory);
    // Only reads it, which may still be written by the run that made it: its notes, and what is on the disk.
    // False without one that can be read.
    bool look(std::string_view directory);
    bool isOpen() const { return file_.isOpen(); }
    // Empty unless the journal was opened and not discarded.
    const std::string& directory() const { return directory_; }

    // The directories of all journals below the state directory: those of removals that were interrupted,
    // and of those that still run.
    std::vector<std::string> directoriesOnDisk();

    // Removes directories whose makers were killed before there was a journal in them. Nobody may be making
    // one at the same time.
    void removeUnfinishedDirectories();

    // Keeps a text under a name, on the disk when it returns: what a later run has to know (the product, its
    // log, its archives). The last one counts.
    int note(std::string_view name, std::string_view text);
    // Several at once: after a failure none of them holds, or those of them that were written.
    using Notes = std::vector<std::pair<std::string, std::string>>;
    int note(const Notes& notes);
    // None when there is no such note.
    std::optional<std::string> noteOf(std::string_view name) const;

    // These files lie in an archive that is complete and on the disk: their contents won't be kept again,
    // only their rights. In one go for all of them, because a flush for each would take long. What is no
    // plain file, or one whose rights can't be kept, is left out and will be kept whole.
    int noteArchived(const std::vector<std::string>& paths);
    // Those of them that were noted since the last call, as they were given.
    std::vector<std::string> takeArchived() { return std::exchange(newlyArchived_, {}); }
    // In any spelling.
    bool isArchived(std::string_view path) const;
    // The path of an empty file with the rights of the archived one; empty when there is none.
    std::string rightsOf(std::string_view path) const;

    // Writes one record, or several with one flush, and numbers them. After a failure the change must not be
    // made.
    int append(RemovalRecord& record, Durability durability);
    int append(std::vector<RemovalRecord>& records, Durability durability);
    // Why the last record that couldn't be written couldn't; 0 when there was none.
    int failure() const { return failure_; }
    // Nothing is left to take back from the record. A failure costs no more than a look.
    void settle(std::uint32_t record);

    // A number for a file to keep, never given twice, and the path of that file.
    std::uint32_t nextKept() { return ++lastKept_; }
    std::string keptPath(std::uint32_t number) const;

    // What is on the disk now.
    ReadRecords read();

    // Removes the directory with all that it keeps, and the levels of the state directory that were made for
    // it or that the removal wanted to remove, if they are empty. For the end of a session whose removal
    // counts, or has been taken back whole. 0 when nothing of it is left.
    int discard();
    // So many levels of the state directory are to go with it, unless they hold something else.
    std::int32_t levels() const { return static_cast<std::int32_t>(madeLevels_.size()); }
    // The removal wants to remove the state directory, which isn't possible before the journal has gone.
    bool holdsDirectory(std::string_view path) const;
    // A product that goes for good had made so many levels of the state directory: they go with the journal.
    int takeLevels(std::int32_t levels);
    void releaseDirectory(std::string_view path);

private:
    int makeStateDirectory();
    bool keepRightsOnce(const std::string& path, std::unordered_map<std::string, std::uint32_t>& keptRights,
                        std::uint32_t& outKept);
    bool isUnfinished(const std::string& directory);
    int write(std::string_view frames, Durability durability);
    int cutTornRecord();
    void adopt(const RemovalRecord& record);
    void adoptLevels();
    bool removeContent();
    void removeStateDirectory();

    platform::FileSystem& files_;
    platform::Environment& environment_;
    PFileStream file_;
    std::string stateDirectory_;
    std::string directory_;
    std::vector<std::string> madeLevels_;  // of the state directory, deepest first
    std::uint32_t lastRecord_ = 0;
    std::uint32_t lastKept_ = 0;
    std::int64_t tornRecord_ = -1;  // where one begins that could not be cut off yet
    int failure_ = 0;
    std::map<std::string, std::string, std::less<>> notes_;
    std::vector<std::string> newlyArchived_;
    std::unordered_map<std::string, std::uint32_t> archived_;  // kept numbers, by the identity of the path
};
