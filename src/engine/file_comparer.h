#pragma once

#include <cstdint>

#include "support/md5.h"

namespace platform {
class FileSystem;
}

// What stands on the disk where a file is to go.
struct FileOnDisk {
    bool exists = false;  // it could be opened for reading
    bool differs = true;  // or there is nothing to compare
};

// Compares files on the disk with content that is known by its size and digest.
class FileComparer {
public:
    // Files of this size and above always count as different.
    static constexpr std::int64_t kSizeLimit = 0x40000000;

    explicit FileComparer(platform::FileSystem& files) : files_(files) {}

    // Holds nothing but a block of the file in memory.
    FileOnDisk compare(const char* path, std::int64_t contentSize, const Md5Digest& digest);

private:
    platform::FileSystem& files_;
};
