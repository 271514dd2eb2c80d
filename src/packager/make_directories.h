#pragma once

#include <string>

namespace platform {
class FileSystem;
}

// Makes a directory and those above it that are missing. 0, or the system's error number; `outFailed` is the
// directory that couldn't be made then.
int makeDirectories(const std::string& path, platform::FileSystem& files, std::string& outFailed);
