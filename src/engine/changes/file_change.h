#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/changes/change.h"
#include "engine/changes/directory_change.h"
#include "engine/changes/former_contents.h"
#include "engine/changes/replaced_files.h"
#include "engine/disk_files.h"
#include "engine/file_contents.h"
#include "engine/file_planner.h"

class FileSets;
struct EngineParts;
struct FileEntry;

// FILE: the files of the selected file sets. A record is OVER, for a file whose former content the archive
// holds or would hold, or CREATE, and the path.
class FileChange : public Change {
public:
    // All of them outlive this object.
    FileChange(const ChangeContext& context, const EngineParts& parts, ReplacedFiles& replaced);

    // Puts the files on the disk, and marks programs as such where the file system knows that. No error stops
    // the next file; each is reported. Former content that is to be restorable goes into the archive, and the
    // record of a file is written, before the file is touched. A file whose record can't be written stays as
    // it is.
    bool apply() override;
    // Deletes the file of a record CREATE, unless it is still, or again, what the installation was going to
    // replace. A file that is gone already is no failure. What a record OVER
    // names belongs to the archive: restored, left because the user has changed it, or waiting for the
    // repetition of a walk that could not read the archive. Where there is no archive at all, the file goes
    // while it is known to be what was installed; otherwise it is named and stays.
    bool undo(const LogRecord& record) override;

    // Of a file that is installed, in the progress of the whole job.
    static std::int64_t weightOf(const FileEntry& file);

    // The path of a record CREATE or OVER; otherwise empty.
    static std::string_view createdFile(const LogRecord& record);
    static std::string_view replacedFile(const LogRecord& record);

private:
    // One file on its way through the steps.
    struct Work {
        const FileEntry& file;
        std::size_t index;
        std::string path;
        FileOnDisk onDisk;
        bool flushNow;
        bool isRestorable = false;     // the record says that the user's file comes back
        std::string_view reason = {};  // why nothing was written, if the disk doesn't say so
    };

    void install(std::size_t index);
    std::string prepareDirectory(const FileEntry& file);
    bool readContent(Work& work, FileContent& content);
    FileOnDisk lookAt(const Work& work, const FileContent& content);
    bool backUp(Work& work);
    bool record(Work& work, const FileContent& content);
    std::string formerState(const Work& work, const FileContent& content);
    bool wasNotMade(const LogRecord& record, const std::string& path);
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
    FormerContents former_;
    DiskFiles disk_;
    DirectoryChange directories_;
    bool failed_ = false;
};
