#pragma once

#include <cstdint>

class InstallerUI;
class SystemOperations;
namespace platform {
class FileSystem;
}

// Frees files that running programs hold.
class FileInUse {
public:
    // A program's name is cut to this many bytes before it is looked for.
    static constexpr std::size_t kNameLimit = 199;

    // Both outlive this object.
    FileInUse(platform::FileSystem& files, SystemOperations& system) : files_(files), system_(system) {}

    // Stops the program that runs from the file, waits up to `waitMilliseconds` for its end, and deletes the
    // file. Only programs are treated: a path without ".exe" is left alone. True when the file was deleted.
    // `ui` may be null.
    bool deleteFileInUse(InstallerUI* ui, const char* path, std::uint32_t waitMilliseconds);

private:
    void stopProgram(InstallerUI* ui, const char* name, std::uint32_t waitMilliseconds);

    platform::FileSystem& files_;
    SystemOperations& system_;
};
