#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "engine/changes/change.h"
#include "engine/disk_files.h"
#include "engine/file_contents.h"
#include "engine/file_planner.h"

class FileSets;
struct EngineParts;
struct FileEntry;
struct ReplacedFiles;

// Puts the former contents of files into the archive before the files are replaced. They are on the disk by
// then, where the loss of power leaves them: that takes its time, so it is done once for a batch of files.
class FormerContents {
public:
    // Files of one batch. More would leave others more time to change a file after it was archived.
    static constexpr std::size_t kBatch = 256;

    // What became of one file that is, or may be, to be restored later.
    struct Outcome {
        FileOnDisk onDisk;
        bool isNeeded = false;               // the content belongs into the archive
        std::optional<std::string> failure;  // why it isn't there
        int status = 0;                      // the system's error number for that, if it gave one
    };

    // All of them outlive this object.
    FormerContents(const ChangeContext& context, const EngineParts& parts, ReplacedFiles& replaced);

    // Archives what the files from this one on, of the file sets' list, are going to replace. To be called
    // for the first of each batch, before any of them is replaced. Reports nothing.
    void archiveBatch(std::size_t first);
    // Null for a file of which nothing is to be kept.
    const Outcome* of(std::size_t index) const;

    // Something was written to this path: what the batch has found there holds no longer.
    void noteWritten(std::string_view path);
    bool isWritten(std::string_view path) const;

private:
    bool mayBeKept(const FileEntry& file, const std::string& path);
    bool isToBeKept(const FileEntry& file, const std::string& path, const FileOnDisk& onDisk);
    void archive(const FileEntry& file, const std::string& path, Outcome& outOutcome);
    void failAll(const std::string& failure, int status);

    ChangeContext context_;
    const FileSets& fileSets_;
    ReplacedFiles& replaced_;
    // They say nothing: what goes wrong is said when the file is installed.
    FilePlanner planner_;
    FileContents contents_;
    DiskFiles disk_;
    std::unordered_map<std::size_t, Outcome> batch_;
    std::unordered_set<std::string> written_;
};
