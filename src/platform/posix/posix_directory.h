#pragma once

#include <sys/types.h>

#include <string>

#include "platform/file_system.h"
#include "platform/posix/system_calls.h"

namespace platform {

// What an entry with this mode is.
PathKind pathKindOf(mode_t mode);

// An open directory's descriptor as a Directory; owns the descriptor.
class PosixDirectory : public Directory {
public:
    // Opens `path`, which counts from the directory `base`, with these further flags. 0 or errno.
    static int open(int base, const std::string& path, int flags, std::unique_ptr<Directory>& outDirectory);

    // Give what an unlink or a removal of the directory would take away the free path `to`. `path` counts
    // from the directory `base`, `to` from the present one. 0 or errno.
    static int takeFileAway(int base, const std::string& path, const std::string& to);
    static int takeDirectoryAway(int base, const std::string& path, const std::string& to);

    explicit PosixDirectory(int descriptor) : descriptor_(descriptor) {}

    int list(std::vector<DirectoryEntry>& outEntries) override;
    int listDisk(std::vector<DiskEntry>& outEntries) override;
    int openDirectory(std::string_view name, std::unique_ptr<Directory>& outDirectory) override;
    int removeFile(std::string_view name) override;
    int removeDirectory(std::string_view name) override;
    int openFile(std::string_view name, std::unique_ptr<File>& outFile) override;
    int takeFileAway(std::string_view name, std::string_view to) override;
    int takeDirectoryAway(std::string_view name, std::string_view to) override;

private:
    Descriptor descriptor_;
};

}  // namespace platform
