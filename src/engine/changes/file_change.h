#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/changes/change.h"
#include "engine/changes/directory_change.h"
#include "engine/changes/removed_files.h"
#include "engine/disk_files.h"
#include "engine/file_contents.h"
#include "engine/file_history.h"
#include "engine/file_planner.h"
#include "engine/product_state.h"
#include "package/backup_file.h"

class FileSets;
struct EngineParts;
struct FileEntry;

// The archive with the former content of files that were replaced.
struct ReplacedFiles {
    explicit ReplacedFiles(platform::FileSystem& files) : archive(files) {}

    BackupFile archive;  // of an installation: open for writing
    // In an uninstallation: there is no archive any more, so that no repetition restores anything either.
    bool isArchiveMissing = false;
    WrittenSums written;  // what the installation wrote, as far as that is needed and known
    RemovedFiles removed;
    FileHistory history;  // of an installation
};

// FILE: the files of the selected file sets. A record is OVER, for a file whose former content the archive
// holds or would hold, or CREATE, and the path.
class FileChange : public Change {
public:
    // All of them outlive this object.
    FileChange(const ChangeContext& context, const EngineParts& parts, ReplacedFiles& replaced);

    // Puts the files on the disk, and marks programs as such where the file system knows that. No error stops
    // the next file; each is reported. Former content that is to be restorable goes into the archive, and the
    // record of a file is written before the file is touched, so that a part of a file is undone as well.
    bool apply() override;
    // Deletes the file of a record CREATE. A file that is gone already is no failure. What a record OVER
    // names belongs to the archive: restored, left because the user has changed it, or waiting for the
    // repetition of a walk that could not read the archive. Where there is no archive at all, the file goes
    // while it is known to be what was installed; otherwise it is named and stays.
    bool undo(const LogRecord& record) override;

    // The path of a record CREATE or OVER; otherwise empty.
    static std::string_view createdFile(const LogRecord& record);
    static std::string_view replacedFile(const LogRecord& record);

private:
    // One file on its way through the steps.
    struct Work {
        const FileEntry& file;
        std::string path;
        FileOnDisk onDisk;
        bool flushNow;
        bool isRestorable = false;  // the record says that the user's file comes back
    };

    void install(std::size_t index);
    std::string prepareDirectory(const FileEntry& file);
    bool readContent(Work& work, FileContent& content);
    bool isToBeBackedUp(const Work& work);
    bool backUp(Work& work, const FileContent& content);
    bool replace(Work& work, const FileContent& content);
    bool place(const Work& work, const FileContent& content);
    void noteInstalled(const Work& work, const FileContent& content);
    void markProgram(const Work& work);
    void reportInstalled(const Work& work, bool inPlace);
    bool remove(const std::string& path);
    void leave(const std::string& path);
    bool isStillInstalled(const std::string& path);

    ChangeContext context_;
    const FileSets& fileSets_;
    ReplacedFiles& replaced_;
    FilePlanner planner_;
    FileContents contents_;
    DiskFiles disk_;
    DirectoryChange directories_;
    bool failed_ = false;
};
