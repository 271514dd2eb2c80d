#pragma once

#include "engine/changes/removed_files.h"
#include "engine/file_history.h"
#include "engine/product_state.h"
#include "package/backup_file.h"

// The archive with the former content of files that were replaced, and what else is known of the files.
struct ReplacedFiles {
    explicit ReplacedFiles(platform::FileSystem& files) : archive(files) {}

    BackupFile archive;  // of an installation: open for writing
    // In an uninstallation: there is no archive any more, so that no repetition restores anything either.
    bool isArchiveMissing = false;
    WrittenSums written;  // what the installation wrote, as far as that is needed and known
    RemovedFiles removed;
    FileHistory history;  // of an installation
};
