#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/posix/system_calls.h"

namespace platform {

// An open directory's descriptor as a Directory; owns the descriptor.
class PosixDirectory : public Directory {
public:
    // Opens `path`, which counts from the directory `base`, with these further flags. 0 or errno.
    static int open(int base, const std::string& path, int flags, std::unique_ptr<Directory>& outDirectory);

    explicit PosixDirectory(int descriptor) : descriptor_(descriptor) {}

    int list(std::vector<DirectoryEntry>& outEntries) override;
    int openDirectory(std::string_view name, std::unique_ptr<Directory>& outDirectory) override;
    int removeFile(std::string_view name) override;
    int removeDirectory(std::string_view name) override;

private:
    Descriptor descriptor_;
};

}  // namespace platform
