#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "engine/directory_creator.h"
#include "engine/file_comparer.h"
#include "support/debug_log.h"

class ActionLogWriter;
class BackupFile;
class FileContents;
class FilePlanner;
class FileReplacer;
class FileSets;
class Report;
struct FileContent;
struct FileEntry;

// Puts the files of the selected file sets on the disk. No error stops the next file; each is reported.
class FileInstaller {
public:
    // Called for each file that stands as it should, whether it had to be written or not.
    using Hook = std::function<void(const std::string& path, const FileEntry& file)>;

    struct Parts {
        const FileSets& fileSets;
        FilePlanner& planner;
        FileContents& contents;
        FileReplacer& replacer;
        ActionLogWriter& log;
        platform::FileSystem& files;
    };

    FileInstaller(Parts parts, DebugLog debugLog);

    // `backup` is open for writing and gets the former content of files that are to be restorable. The
    // record of a file stands in the log before the file is touched. False when anything failed.
    bool installFiles(BackupFile& backup, Report& report, const Hook& afterFileInstalled);

private:
    // One file on its way through the steps.
    struct Work {
        const FileEntry& file;
        std::string path;
        FileOnDisk onDisk;
        bool flushNow;
    };

    void installFile(std::size_t index, BackupFile& backup, Report& report,
                     const Hook& afterFileInstalled);
    std::string prepareDirectory(const FileEntry& file);
    bool readContent(Work& work, FileContent& content);
    void backUp(const Work& work, const FileContent& content, BackupFile& backup, Report& report);
    bool place(const Work& work, const FileContent& content, Report& report);
    static void reportFile(const Work& work, bool stands, Report& report);

    Parts parts_;
    DebugLog debugLog_;
    FileComparer comparer_;
    DirectoryCreator directories_;
    bool failed_ = false;
};
